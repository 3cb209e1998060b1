#include "Tools/SystemJunk/ItemRecency.h"

#include "Platform/FileDescriptor.h"
#include "Platform/FileUsage.h"
#include "Tools/SystemJunk/JunkScanner.h"
#include "Tools/SystemJunk/TemporaryRule.h"
#include "support/BackgroundProgram.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>
#include <sys/file.h>
#include <unistd.h>

namespace vh::junk::test {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::seconds;

TEST(TemporaryRule, ReadsAgesAsTheSystemWritesThem) {
    struct Row {
        const char* text;
        std::optional<seconds> age;
    };
    const Row rows[] = {{"10d", days(10)},
                        {"1w2d 12h", days(9) + hours(12)},
                        {"90", seconds(90)},
                        {"5min 30s", seconds(330)},
                        {"~mA:4h", hours(4)},
                        {"0", seconds(0)},
                        {"-", std::nullopt},
                        {"", std::nullopt},
                        {"10 parsecs", std::nullopt},
                        {"99999999999999999999d", std::nullopt}};
    for (const Row& row : rows)
        EXPECT_EQ(tmpfilesAge(row.text), row.age) << row.text;
}

TEST(TemporaryRule, FollowsTheConfigurationAndElseTheCustom) {
    EXPECT_EQ(TemporaryRule::of("/tmp", {}).age, seconds(days(10)));
    EXPECT_EQ(TemporaryRule::of("/var/tmp", {}).age, seconds(days(30)));
    const std::map<std::string, std::string> files{
        {"tmp.conf", "# a remark\nD /tmp 1777 root root -\nq /var/tmp 1777 root root 7d\n"},
        {"x11.conf", "x /tmp/.X11-unix\nX \"/tmp/kept by name*\"\nx /home/*/tmp\nbroken\nd\n"}};
    const TemporaryRule rule = TemporaryRule::of("/tmp", files);
    EXPECT_EQ(rule.age, seconds(days(10))) << "a line without an age says nothing of it";
    EXPECT_TRUE(rule.keeps("/tmp/.X11-unix"));
    EXPECT_TRUE(rule.keeps("/tmp/kept by name, too"));
    EXPECT_FALSE(rule.keeps("/tmp/build"));
    EXPECT_EQ(TemporaryRule::of("/var/tmp", files).age, seconds(days(7)));
}

TEST(ItemRecency, WhatIsEverybodysHasToLieLongAndUnseenCountsAsUsed) {
    constexpr int64_t now = 1'000'000'000;
    const auto item = [](int64_t usedAgo, int64_t touchedAgo, bool isWhole = true) {
        return ItemSize{.usedSeconds = now - usedAgo, .touchedSeconds = now - touchedAgo, .isWhole = isWhole};
    };
    constexpr int64_t day = 86400;
    const std::optional<seconds> own, shared = days(10);
    EXPECT_EQ(recencyOf(item(60, 60), own, now), Recency::recent);
    EXPECT_EQ(recencyOf(item(-60, -60), own, now), Recency::recent) << "a clock that was set back";
    EXPECT_EQ(recencyOf(item(3600, 60), own, now), Recency::settled);
    EXPECT_EQ(recencyOf(item(3600, 60, false), own, now), Recency::settled) << "large caches are usual";
    EXPECT_EQ(recencyOf(item(9 * day, 9 * day), shared, now), Recency::recentInShared);
    EXPECT_EQ(recencyOf(item(11 * day, 9 * day), shared, now), Recency::recentInShared)
        << "moved there yesterday, written long ago";
    EXPECT_EQ(recencyOf(item(11 * day, 11 * day), shared, now), Recency::settled);
    EXPECT_EQ(recencyOf(item(11 * day, 11 * day, false), shared, now), Recency::recentInShared);
}

Recency recencyOfOnly(const SystemJunkConfiguration& configuration) {
    const ScanReport report = JunkScanner(configuration).scan("system-junk", {});
    EXPECT_EQ(report.items.size(), 1u);
    return report.items.at(0).recency;
}

TEST(JunkScanner, TakesTheNewestOfAllThatLiesInAnItem) {
    const Sandbox home;
    write(home.cache("app/deep/old"), "x");
    EXPECT_EQ(recencyOfOnly(home.configuration()), Recency::settled);
    std::ofstream(home.cache("app/deep/.hidden")) << "x";
    EXPECT_EQ(recencyOfOnly(home.configuration()), Recency::recent)
        << "a build tree has its state in hidden files";
    const ScanReport report = JunkScanner(home.configuration()).scan("system-junk", {});
    EXPECT_TRUE(report.settled().items.empty()) << "nobody who does not see it takes it";
}

TEST(JunkScanner, OffersOfTheSharedFolderOnlyWhatNobodyTouchedForLong) {
    const Sandbox home;
    ASSERT_EQ(::chmod((home / "tmp").c_str(), 01777), 0);
    write(home / "tmp/build/tree", "x");
    SystemJunkConfiguration configuration = home.configuration();
    EXPECT_EQ(recencyOfOnly(configuration), Recency::recentInShared) << "old by its dates, made a moment ago";
    EXPECT_TRUE(JunkScanner(configuration).scan("system-junk", {}).withoutShared().items.empty());
    configuration.clock = [] {
        return systemNow() + days(11);
    };
    EXPECT_EQ(recencyOfOnly(configuration), Recency::settled);
}

TEST(JunkScanner, LeavesWhatARunningProgramWorksWith) {
    const Sandbox home;
    for (const char* name : {"named", "its-tmpdir", "locked", "free"})
        write(home / (std::string("tmp/") + name + "/file"), "x");
    const vh::test::BackgroundProgram named(
        {"/bin/sh", "-c", "echo ready; sleep 60", "--root=" + (home / "tmp/named") + "/x"});
    const vh::test::BackgroundProgram working(
        {"/bin/sh", "-c", "export TMPDIR=\"$HOME/tmp/its-tmpdir\"; exec /bin/sh -c 'echo ready; sleep 60'"});
    const FileDescriptor locked(::open((home / "tmp/locked").c_str(), O_RDONLY | O_DIRECTORY));
    EXPECT_FALSE(isLockedFolder(home / "tmp/locked"));
    ASSERT_EQ(::flock(locked.get(), LOCK_SH), 0);
    EXPECT_TRUE(isLockedFolder(home / "tmp/locked")) << "a shared lock says so, too";
    EXPECT_EQ(paths(JunkScanner(home.configuration()).scan("system-junk", {})), std::set{home / "tmp/free"});
}

} // namespace
} // namespace vh::junk::test
