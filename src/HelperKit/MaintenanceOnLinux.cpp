#include "HelperKit/MaintenanceOnLinux.h"

#include <algorithm>
#include <optional>

namespace vh::helper {

namespace {

using Blocker = MaintenancePlan::Blocker;

struct Call {
    std::string program; ///< its name alone
    std::vector<std::string> arguments;
    std::vector<int> alsoPasses = {};
};

/// One of several ways to do a chore; possible when all its programs are there.
struct Way {
    std::string where; ///< the desktop, distribution or file system it belongs to; empty for any
    std::vector<Call> calls;
    std::string servant = {}; ///< a program beside those that are called
};

std::optional<std::string> pathOf(const std::string& program, const MaintenanceFacts& facts) {
    for (const char* folder : {"/usr/bin/", "/usr/sbin/", "/bin/", "/sbin/"})
        if (std::string path = folder + program; facts.hasProgram(path))
            return path;
    return std::nullopt;
}

/// The first program of a way that the machine lacks.
std::optional<std::string> lackOf(const Way& way, const MaintenanceFacts& facts) {
    if (!way.servant.empty() && !pathOf(way.servant, facts))
        return way.servant;
    for (const Call& call : way.calls)
        if (!pathOf(call.program, facts))
            return call.program;
    return std::nullopt;
}

std::vector<MaintenanceCommand> commandsOf(const Way& way, const MaintenanceFacts& facts) {
    std::vector<MaintenanceCommand> commands;
    for (const Call& call : way.calls)
        commands.push_back({pathOf(call.program, facts).value_or(""), call.arguments, call.alsoPasses});
    return commands;
}

/// Whether `word`, unless it is empty, stands among the words of `list`, between blanks or colons.
bool holdsWord(const std::string& list, const std::string& word) {
    for (size_t at = 0; at <= list.size() && !word.empty();) {
        const size_t end = std::min(list.find_first_of(" :", at), list.size());
        if (list.compare(at, end - at, word) == 0)
            return true;
        at = end + 1;
    }
    return false;
}

MaintenancePlan hindered(Blocker blocker) {
    return {{}, blocker, {}};
}

/// The first possible way.
MaintenancePlan planOf(const std::vector<Way>& ways, const MaintenanceFacts& facts) {
    MaintenancePlan plan = hindered(Blocker::programs);
    for (const Way& way : ways) {
        const auto lack = lackOf(way, facts);
        if (!lack)
            return {commandsOf(way, facts), Blocker::none, {}};
        if (std::ranges::find(plan.missing, *lack) == plan.missing.end())
            plan.missing.push_back(*lack);
    }
    return plan;
}

/// The first possible way, those that belong to one of `places` before all others.
MaintenancePlan planPreferring(const std::string& places, std::vector<Way> ways,
                               const MaintenanceFacts& facts) {
    std::stable_partition(ways.begin(), ways.end(),
                          [&](const Way& way) { return holdsWord(places, way.where); });
    return planOf(ways, facts);
}

/// Only ways that belong to one of `places`.
MaintenancePlan planWithin(const std::string& places, std::vector<Way> ways, const MaintenanceFacts& facts,
                           Blocker otherwise) {
    std::erase_if(ways, [&](const Way& way) { return !holdsWord(places, way.where); });
    return ways.empty() ? hindered(otherwise) : planOf(ways, facts);
}

/// Every cache of names that is at work: more than one may be.
MaintenancePlan flushNames(const MaintenanceFacts& facts) {
    struct Cache {
        const char* traces; ///< which its service leaves while it runs; empty for one that killall finds
        Way way;
    };
    const Cache caches[]{
        {"", {"", {{"killall", {"-HUP", "dnsmasq"}}}, "dnsmasq"}},
        {"/run/nscd/socket", {"", {{"nscd", {"-i", "hosts"}}}}},
        {"/run/systemd/resolve", {"", {{"resolvectl", {"flush-caches"}}}}},
    };
    MaintenancePlan plan;
    for (const Cache& cache : caches)
        if (!lackOf(cache.way, facts) && (*cache.traces == '\0' || facts.exists(cache.traces)))
            std::ranges::move(commandsOf(cache.way, facts), std::back_inserter(plan.commands));
    if (plan.commands.empty())
        return {{}, Blocker::programs, {"systemd-resolved", "nscd", "dnsmasq"}};
    return plan;
}

/// The programs fail without their folders, which a new user lacks.
MaintenancePlan rebuildFileTypes(const MaintenanceFacts& facts) {
    const std::string types = facts.dataFolder + "/mime";
    const std::string applications = facts.dataFolder + "/applications";
    return planOf({{"",
                    {{"mkdir", {"-p", types + "/packages", applications}},
                     {"update-mime-database", {types}},
                     {"update-desktop-database", {applications}}}}},
                  facts);
}

/// Follows no link, not even one in the folder's own place, and leaves other file systems alone.
MaintenancePlan deleteThumbnails(const MaintenanceFacts& facts) {
    const std::string thumbnails = facts.cacheFolder + "/thumbnails";
    return planOf(
        {{"", {{"mkdir", {"-p", thumbnails}}, {"find", {thumbnails, "-xdev", "-type", "f", "-delete"}}}}},
        facts);
}

MaintenancePlan closeFileManager(const MaintenanceFacts& facts) {
    return planPreferring(facts.desktop,
                          {{"gnome", {{"nautilus", {"-q"}}}},
                           {"x-cinnamon", {{"nemo", {"-q"}}}},
                           {"mate", {{"caja", {"-q"}}}},
                           {"xfce", {{"thunar", {"-q"}}}},
                           {"kde", {{"killall", {"dolphin"}}}, "dolphin"}},
                          facts);
}

/// Other desktops hold panel and session in one process.
MaintenancePlan restartPanel(const MaintenanceFacts& facts) {
    return planWithin(
        facts.desktop,
        {{"xfce", {{"xfce4-panel", {"-r"}}}},
         {"kde", {{"systemctl", {"--user", "restart", "plasma-plasmashell.service"}}}, "plasmashell"},
         {"mate", {{"killall", {"mate-panel"}}}, "mate-panel"}}, // its session starts it again
        facts, Blocker::desktop);
}

MaintenancePlan reindexFiles(const MaintenanceFacts& facts) {
    const auto daemonOf = [](const char* program) {
        return Way{"gnome", {{program, {"reset", "--filesystem"}}, {program, {"daemon", "--start"}}}, {}};
    };
    return planPreferring(facts.desktop,
                          {daemonOf("localsearch"),
                           daemonOf("tracker3"),
                           {"kde", {{"balooctl6", {"purge"}}}},
                           {"kde", {{"balooctl", {"purge"}}}}},
                          facts);
}

MaintenancePlan checkRoot(const MaintenanceFacts& facts) {
    std::vector<Way> ways{
        // 3: it ran to its end and met errors that it could not correct.
        {"btrfs", {{"btrfs", {"scrub", "start", "-B", "-r", "/"}, {3}}}},
        // 1 and 2: what it found, errors and what could be better.
        {"xfs", {{"xfs_scrub", {"-n", "/"}, {1, 2, 3}}}},
    };
    // 4: errors were left as they are, and what is just being written counts as one.
    if (!facts.rootDevice.empty())
        for (const char* kind : {"ext4", "ext3", "ext2"})
            ways.push_back({kind, {{"e2fsck", {"-n", "-f", facts.rootDevice}, {4}}}});
    return planWithin(facts.rootFileSystem, std::move(ways), facts, Blocker::fileSystem);
}

MaintenancePlan fetchUpdates(const MaintenanceFacts& facts) {
    return planPreferring(
        facts.distribution,
        {{"debian", {{"apt-get", {"update"}}, {"apt-get", {"dist-upgrade", "--download-only", "--yes"}}}},
         {"fedora", {{"dnf", {"upgrade", "--refresh", "--downloadonly", "--assumeyes"}}}},
         {"suse", {{"zypper", {"--non-interactive", "update", "--download-only"}}}},
         // With its own lists, since new ones without their packages leave a system that cannot install anything; and
         // those lists where nobody else can have laid something out. 2: there are no updates.
         {"arch",
          {{"env",
            {"CHECKUPDATES_DB=/var/cache/varnholt-updates", "/usr/bin/checkupdates", "--download"},
            {2}}},
          "checkupdates"},
         // 5: there was nothing to do.
         {"",
          {{"pkcon", {"refresh", "--plain", "--noninteractive"}, {5}},
           {"pkcon", {"update", "--only-download", "--plain", "--noninteractive"}, {5}}}}},
        facts);
}

} // namespace

MaintenancePlan linuxPlan(MaintenanceTask task, const MaintenanceFacts& facts) {
    switch (task) {
    case MaintenanceTask::flushDNS:
        return flushNames(facts);
    case MaintenanceTask::rebuildLaunchServices:
        return rebuildFileTypes(facts);
    case MaintenanceTask::resetQuickLook:
        return deleteThumbnails(facts);
    case MaintenanceTask::clearFontCaches:
        return planOf({{"", {{"fc-cache", {"-f"}}}}}, facts);
    case MaintenanceTask::restartFinder:
        return closeFileManager(facts);
    case MaintenanceTask::restartDock:
        return restartPanel(facts);
    case MaintenanceTask::reindexSpotlight:
        return reindexFiles(facts);
    case MaintenanceTask::purgeMemory:
        return planOf({{"", {{"sync", {}}, {"sysctl", {"-w", "vm.drop_caches=3"}}}}}, facts);
    case MaintenanceTask::verifyBootVolume:
        return checkRoot(facts);
    case MaintenanceTask::downloadUpdates:
        return fetchUpdates(facts);
    case MaintenanceTask::restartMac:
        return planOf({{"", {{"shutdown", {"-r", "+1"}}}}}, facts);
    }
    return hindered(Blocker::programs);
}

} // namespace vh::helper
