#include "HelperKit/MaintenanceTable.h"

#include "Core/Texts.h"
#include "HelperKit/MaintenanceTexts.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <set>

namespace vh::helper {

using enum MaintenanceTask;

namespace {

/// What was noted of a machine: its programs and marks by path, each followed by a blank.
struct Machine {
    std::string there;
    std::string desktop = {};
    std::string distribution = {};
    std::string fileSystem = "ext4";
    std::string device = "/dev/sda1";
};

MaintenanceFacts factsOf(const Machine& machine) {
    const auto isThere = [there = " " + machine.there + " "](const std::string& path) {
        return there.find(" " + path + " ") != std::string::npos;
    };
    return {isThere,
            isThere,
            machine.fileSystem,
            machine.device,
            machine.desktop,
            machine.distribution,
            "/home/ana/.local/share",
            "/home/ana/.cache"};
}

/// Commands a line each, or what stands in the way.
std::string planOn(MaintenanceTask task, const Machine& machine) {
    const MaintenancePlan plan = maintenancePlan(task, MaintenanceSystem::linux, factsOf(machine));
    EXPECT_EQ(plan.isPossible(), !plan.commands.empty());
    std::string text = plan.isPossible() ? "" : blockerText(plan, Texts(Language::en));
    for (const MaintenanceCommand& command : plan.commands) {
        text += fmt::format("{}{} {}", text.empty() ? "" : "\n", command.executable,
                            fmt::join(command.arguments, " "));
        if (!command.alsoPasses.empty())
            text += fmt::format(" [{}]", fmt::join(command.alsoPasses, " "));
    }
    return text;
}

} // namespace

TEST(MaintenanceTable, aRestartIsOnNoMenu) {
    EXPECT_EQ(listedTasks().size(), allCases<MaintenanceTask>().size() - 1);
    EXPECT_EQ(std::ranges::count(listedTasks(), restartMac), 0);
}

TEST(MaintenanceTable, aMachineUsesWhatItHas) {
    const Machine fedora{
        "/usr/bin/resolvectl /run/systemd/resolve /usr/sbin/nscd /usr/bin/dnf /usr/bin/apt-get "
        "/usr/bin/pkcon /usr/bin/nemo /usr/bin/nautilus /usr/bin/tracker3 /usr/bin/balooctl6 "
        "/usr/sbin/btrfs",
        "gnome", "fedora ", "btrfs", "/dev/sda3"};
    const Machine kubuntu{
        "/usr/bin/killall /usr/sbin/dnsmasq /usr/sbin/nscd /run/nscd/socket /usr/bin/apt-get "
        "/usr/bin/dolphin /usr/bin/nautilus /usr/bin/plasmashell /usr/bin/systemctl "
        "/usr/bin/tracker3 /usr/bin/balooctl /sbin/e2fsck /usr/bin/sync /sbin/sysctl",
        "kde", "ubuntu debian", "ext4", "/dev/block/8:1"};
    const Machine arch{
        "/usr/bin/env /usr/bin/checkupdates /usr/bin/pacman /usr/bin/xfce4-panel /usr/bin/thunar "
        "/usr/bin/xfs_scrub /usr/bin/mkdir /usr/bin/find",
        "xfce", "arch ", "xfs", "/dev/nvme0n1p2"};
    const Machine bare{"/bin/mkdir", "ubuntu:gnome", "debian ", "overlay", ""};
    struct Case {
        const Machine& machine;
        MaintenanceTask task;
        std::string_view plan;
    };
    const Case cases[]{
        {fedora, flushDNS, "/usr/bin/resolvectl flush-caches"},
        {kubuntu, flushDNS, "/usr/bin/killall -HUP dnsmasq\n/usr/sbin/nscd -i hosts"},
        {bare, flushDNS,
         "This needs one of these, and this computer has none: systemd-resolved, nscd, dnsmasq."},
        {arch, resetQuickLook,
         "/usr/bin/mkdir -p /home/ana/.cache/thumbnails\n"
         "/usr/bin/find /home/ana/.cache/thumbnails -xdev -type f -delete"},
        {bare, rebuildLaunchServices, "This needs update-mime-database, which this computer lacks."},
        {fedora, restartFinder, "/usr/bin/nautilus -q"},
        {kubuntu, restartFinder, "/usr/bin/killall dolphin"},
        {arch, restartDock, "/usr/bin/xfce4-panel -r"},
        {kubuntu, restartDock, "/usr/bin/systemctl --user restart plasma-plasmashell.service"},
        {bare, restartDock,
         "Only Xfce, KDE Plasma and MATE have a panel that restarts alone, and this session is none of "
         "them."},
        {fedora, reindexSpotlight, "/usr/bin/tracker3 reset --filesystem\n/usr/bin/tracker3 daemon --start"},
        {kubuntu, reindexSpotlight, "/usr/bin/balooctl purge"},
        {kubuntu, purgeMemory, "/usr/bin/sync \n/sbin/sysctl -w vm.drop_caches=3"},
        {fedora, verifyBootVolume, "/usr/sbin/btrfs scrub start -B -r / [3]"},
        {kubuntu, verifyBootVolume, "/sbin/e2fsck -n -f /dev/block/8:1 [4]"},
        {arch, verifyBootVolume, "/usr/bin/xfs_scrub -n / [1 2 3]"},
        {bare, verifyBootVolume,
         "The file system of this computer’s root cannot be checked while it is in use."},
        {fedora, downloadUpdates, "/usr/bin/dnf upgrade --refresh --downloadonly --assumeyes"},
        {kubuntu, downloadUpdates,
         "/usr/bin/apt-get update\n/usr/bin/apt-get dist-upgrade --download-only --yes"},
        {arch, downloadUpdates,
         "/usr/bin/env CHECKUPDATES_DB=/var/cache/varnholt-updates /usr/bin/checkupdates --download [2]"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(planOn(each.task, each.machine), each.plan);
}

TEST(MaintenanceTable, macOSNeedsNoFacts) {
    for (const MaintenanceTask task : allCases<MaintenanceTask>()) {
        const MaintenancePlan plan = maintenancePlan(task, MaintenanceSystem::macos, {});
        ASSERT_TRUE(plan.isPossible());
        for (const MaintenanceCommand& command : plan.commands)
            EXPECT_TRUE(command.executable.starts_with('/')) << command.executable;
    }
}

TEST(MaintenanceTexts, nothingSpeaksOfTheOtherSystem) {
    for (const Language language : {Language::en, Language::es, Language::fr}) {
        const Texts texts(language);
        for (const MaintenanceTask task : allCases<MaintenanceTask>()) {
            const auto textsOf = [&](MaintenanceSystem system) {
                return std::vector{taskTitle(task, system, texts), taskDetail(task, system, texts),
                                   worded(successMessage(task, system), texts),
                                   worded(failureMessage(task, system), texts)};
            };
            for (const std::string& text : textsOf(MaintenanceSystem::macos))
                EXPECT_FALSE(text.starts_with("maintenance."));
            for (const std::string& text : textsOf(MaintenanceSystem::linux)) {
                EXPECT_FALSE(text.starts_with("maintenance."));
                for (const char* foreign : {"Mac", "mac", "Finder", "Dock", "Spotlight", "Launch", "APFS"})
                    EXPECT_EQ(text.find(foreign), std::string::npos) << text;
            }
        }
    }
}

} // namespace vh::helper
