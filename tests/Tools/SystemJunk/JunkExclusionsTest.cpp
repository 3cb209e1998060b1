#include "Tools/SystemJunk/JunkExclusions.h"
#include "Tools/SystemJunk/LogEntries.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace vh::junk {
namespace {

namespace fs = std::filesystem;

TEST(JunkExclusions, RulesHoldOnlyWhereTheyStand) {
    struct Row {
        const char* name;
        RootKind kind;
        bool kept;
    };
    for (const Row& row : std::initializer_list<Row>{
             {"CloudKit", RootKind::caches, true},
             {"com.apple.Safari", RootKind::other, true},
             {"com.apple.Safari.old", RootKind::caches, false},
             {"dconf", RootKind::caches, true},
             {"dconf", RootKind::temporary, false},
             {"dconf-backup", RootKind::caches, false},
             {"rclone", RootKind::caches, true},
             {"varnholt-1000", RootKind::temporary, true},
             {"ssh-XXabc", RootKind::temporary, true},
             {"ssh-XXabc", RootKind::caches, false},
             {"systemd-private-1-a.service", RootKind::temporary, true},
             {"com.apple.launchd.x", RootKind::temporary, true},
             {"mozilla", RootKind::caches, false},
         })
        EXPECT_EQ(keepRuleFor(row.name, row.kind) != nullptr, row.kept) << row.name;
    EXPECT_EQ(defaultDeniedBasenames(),
              (std::set<std::string>{"CloudKit", "FamilyCircle", "com.apple.accountsd", "com.apple.Safari"}));
}

TEST(LogEntries, NamesThatSayLogs) {
    for (const char* name :
         {"app.log", "APP.LOG", "x.log.1", "x.log.2.gz", "x.out.old", "Xorg.0.log.old", "daemon.err", "log",
          "Logs", "my-log-2026", "crash_17", "report.txt", "journal", "trace-\xff\xfe.txt", "log\nlog"})
        EXPECT_TRUE(nameSaysLogs(name)) << name;
    for (const char* name :
         {"blog", "login", "catalogue", "cat\xc3\xa1logo.txt",
          "log\xc3\xad"
          "a",
          "undo", "bash_history", "bash_history.old", "log.sqlite", "crash.db", "history.1", "", ".gz"})
        EXPECT_FALSE(nameSaysLogs(name)) << name;
}

TEST(LogEntries, AFolderCountsWhenAllItsFilesDo) {
    const vh::test::TempDir dir;
    const auto file = [&](const std::string& name) {
        fs::create_directories(fs::path(dir / name).parent_path());
        std::ofstream(dir / name) << "x";
    };
    struct Row {
        const char* folder;
        std::vector<std::string> files;
        bool offered;
    };
    for (const Row& row : std::initializer_list<Row>{
             {"only", {"a.log", "deep/b.log.1"}, true},
             {"mixed", {"a.log", "undo.txt"}, false},
             {"hidden", {"a.log", ".settings"}, false},
             {"named", {"logs/anything", "x.err"}, true},
             {"logs", {"anything"}, true},
             {"deepState", {"a.log", "one/two/state"}, false},
         }) {
        for (const auto& name : row.files)
            file(std::string(row.folder) + "/" + name);
        EXPECT_EQ(consistsOfLogs(dir / row.folder, FileType::folder), row.offered) << row.folder;
    }
    fs::create_directories(dir / "empty");
    EXPECT_FALSE(consistsOfLogs(dir / "empty", FileType::folder));
    // More than can be looked at is not known to be logs.
    for (int i = 0; i < 1001; ++i)
        file("many/" + std::to_string(i) + ".log");
    EXPECT_FALSE(consistsOfLogs(dir / "many", FileType::folder));
}

} // namespace
} // namespace vh::junk
