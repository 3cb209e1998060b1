#include "HelperKit/MaintenanceTable.h"

#include "HelperKit/MaintenanceOnLinux.h"
#include "Platform/FileIdentity.h"
#include "Platform/Folders.h"
#include "Platform/Host.h"
#include "Platform/Process.h"
#include "Platform/Volumes.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace vh::helper {

namespace {

struct Row {
    MaintenanceTask task;
    bool rootOnMacOS;
    bool rootOnLinux; ///< the user's own search index, and any check of a mounted device
    bool isSlow;
};
constexpr std::array rows{Row{MaintenanceTask::flushDNS, true, true, false},
                          Row{MaintenanceTask::rebuildLaunchServices, false, false, false},
                          Row{MaintenanceTask::resetQuickLook, false, false, false},
                          Row{MaintenanceTask::clearFontCaches, false, false, false},
                          Row{MaintenanceTask::restartFinder, false, false, false},
                          Row{MaintenanceTask::restartDock, false, false, false},
                          Row{MaintenanceTask::reindexSpotlight, true, false, true},
                          Row{MaintenanceTask::purgeMemory, true, true, false},
                          Row{MaintenanceTask::verifyBootVolume, false, true, true},
                          Row{MaintenanceTask::downloadUpdates, true, true, true},
                          Row{MaintenanceTask::restartMac, true, true, false}};
static_assert(rows.size() == allCases<MaintenanceTask>().size());

const Row& rowOf(MaintenanceTask task) {
    return *std::ranges::find(rows, task, &Row::task);
}

std::vector<MaintenanceCommand> commandsOfMacOS(MaintenanceTask task) {
    switch (task) {
    case MaintenanceTask::flushDNS:
        return {{"/usr/bin/dscacheutil", {"-flushcache"}}, {"/usr/bin/killall", {"-HUP", "mDNSResponder"}}};
    case MaintenanceTask::rebuildLaunchServices:
        return {{"/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/"
                 "Support/lsregister",
                 {"-kill", "-r", "-domain", "local", "-domain", "system", "-domain", "user"}}};
    case MaintenanceTask::resetQuickLook:
        return {{"/usr/bin/qlmanage", {"-r", "cache"}}, {"/usr/bin/qlmanage", {"-r"}}};
    case MaintenanceTask::clearFontCaches:
        return {{"/usr/bin/atsutil", {"databases", "-removeUser"}},
                {"/usr/bin/atsutil", {"server", "-shutdown"}},
                {"/usr/bin/atsutil", {"server", "-ping"}}};
    case MaintenanceTask::restartFinder:
        return {{"/usr/bin/killall", {"Finder"}}};
    case MaintenanceTask::restartDock:
        return {{"/usr/bin/killall", {"Dock"}}};
    case MaintenanceTask::reindexSpotlight:
        return {{"/usr/bin/mdutil", {"-E", "/"}}};
    case MaintenanceTask::purgeMemory:
        return {{"/usr/sbin/purge", {}}};
    case MaintenanceTask::verifyBootVolume:
        return {{"/usr/sbin/diskutil", {"verifyVolume", "/"}}};
    case MaintenanceTask::downloadUpdates:
        return {{"/usr/sbin/softwareupdate", {"--download", "--all"}}};
    case MaintenanceTask::restartMac:
        return {{"/sbin/shutdown", {"-r", "+1"}}};
    }
    return {};
}

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
}

} // namespace

MaintenanceFacts factsOfThisMachine() {
    MaintenanceFacts facts;
    facts.hasProgram = [](const std::string& path) {
        return findProgram(path).has_value();
    };
    facts.exists = [](const std::string& path) {
        return identityOf(path).has_value();
    };
    for (const MountEntry& entry : mountTable()) {
        if (entry.path != "/")
            continue; // of several the last one lies on top
        facts.rootFileSystem = entry.fileSystem;
        facts.rootDevice = devicePathOf(entry);
    }
    const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
    facts.desktop = lowerCase(desktop != nullptr ? desktop : "");
    facts.distribution = distributionNames();
    const Folders folders = Folders::ofUser();
    facts.dataFolder = folders.data;
    facts.cacheFolder = folders.caches;
    return facts;
}

MaintenanceSystem thisSystem() {
    return isMacOS() ? MaintenanceSystem::macos : MaintenanceSystem::linux;
}

MaintenancePlan maintenancePlan(MaintenanceTask task, MaintenanceSystem system,
                                const MaintenanceFacts& facts) {
    if (system == MaintenanceSystem::linux)
        return linuxPlan(task, facts);
    return {commandsOfMacOS(task), MaintenancePlan::Blocker::none, {}};
}

bool requiresRoot(MaintenanceTask task, MaintenanceSystem system) {
    return system == MaintenanceSystem::macos ? rowOf(task).rootOnMacOS : rowOf(task).rootOnLinux;
}

bool isSlow(MaintenanceTask task, MaintenanceSystem) {
    return rowOf(task).isSlow;
}

std::chrono::seconds timeLimit(MaintenanceTask task, MaintenanceSystem system) {
    return std::chrono::seconds(isSlow(task, system) ? 3600 : 180);
}

std::vector<MaintenanceTask> listedTasks() {
    std::vector<MaintenanceTask> tasks;
    for (const MaintenanceTask task : allCases<MaintenanceTask>())
        if (task != MaintenanceTask::restartMac)
            tasks.push_back(task);
    return tasks;
}

} // namespace vh::helper
