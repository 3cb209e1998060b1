#include "Tools/SystemJunk/JunkCleaner.h"

#include "Platform/Trash.h"
#include "Tools/SystemJunk/SystemJunkModule.h"
#include "support/Sandbox.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace vh::junk::test {
namespace {

std::string thrownBy(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& error) {
        return error.what();
    }
    return "nothing";
}

TEST(JunkCleaner, RefusesACleanWithoutSelectionOrScan) {
    const Sandbox home;
    write(home.cache("app/a"), "x");
    SystemJunkModule module(home.configuration());
    EXPECT_EQ(thrownBy([&] { module.clean({{Uuid::random()}}, {}); }), "Run a scan before cleaning.");
    module.scan({});
    EXPECT_EQ(thrownBy([&] { module.clean({}, {}); }), "No items selected.");
    EXPECT_EQ(module.clean({{Uuid::random()}}, {}).items.size(), 0u);
    EXPECT_TRUE(fs::exists(home.cache("app/a")));
}

TEST(JunkCleaner, GuardsACraftedReport) {
    const Sandbox home;
    write(home / "Documents/thesis", "x");
    write(home.cache("CloudKit/a"), "x");
    write(home.cache("dconf/user"), "x");
    write(home.cache("app/inner"), "x");
    write(home / ".local/state/nvim/undo", "x");
    const auto configuration = home.configuration();
    JunkCleaner cleaner(configuration);
    struct Row {
        std::string path;
        std::string error;
    };
    const std::vector<Row> rows{
        {home / "Documents", "Path not allowed: " + home / "Documents"},
        {home.cache("../Documents"), "Path not allowed: " + home.cache("../Documents")},
        {home.cache("app/inner"), "Path not allowed: " + home.cache("app/inner")},
        {"/", "Path not allowed: /"},
        {home / ".cache", "Refusing to delete allowlist root: " + home / ".cache"},
        {home.cache("app/.."), "Refusing to delete allowlist root: " + home / ".cache"},
        {home.cache("CloudKit"), "Refusing to delete denied item: CloudKit"},
        {home.cache("dconf"), "Refusing to delete denied item: dconf"},
        {home / ".local/state/nvim",
         "Refusing to delete what holds more than logs: " + home / ".local/state/nvim"},
    };
    for (const Row& row : rows)
        for (const auto method : {RemovalMethod::trash, RemovalMethod::permanent}) {
            const ScanItem item{Uuid::random(), row.path, 1, "Caches", identityOf(row.path)};
            EXPECT_EQ(thrownBy([&] { cleaner.remove(item, method); }), row.error);
            EXPECT_TRUE(fs::exists(row.path)) << row.path;
        }
}

/// What lies at the path of a scanned item when it is cleaned is no longer what the person saw.
TEST(JunkCleaner, RefusesWhatChangedSinceTheScan) {
    const Sandbox home;
    write(home / "outside/precious", "x");
    struct Row {
        const char* name;
        std::function<void(const std::string&)> swap;
    };
    const std::vector<Row> rows{
        {"link",
         [&](const std::string& path) {
             fs::create_directory_symlink(home / "outside", path);
         }},
        {"file",
         [&](const std::string& path) {
             write(path, "other");
         }},
        {"folder",
         [&](const std::string& path) {
             write(path + "/a", "other");
         }},
    };
    for (const Row& row : rows)
        for (const auto method : {RemovalMethod::trash, RemovalMethod::permanent}) {
            const std::string path = home.cache(row.name);
            fs::remove_all(path);
            write(path + "/seen", "x");
            SystemJunkModule module(home.configuration());
            const ScanReport report = module.scan({});
            fs::rename(path, home / "aside"); // stays, so that its inode is not used again
            row.swap(path);
            const CleanResult result = module.clean(only(report, path, method), {});
            EXPECT_EQ(result.errors,
                      std::vector{path + ": Refusing to delete what changed since the scan: " + path});
            EXPECT_TRUE(fs::exists(fs::symlink_status(path)));
            EXPECT_TRUE(fs::exists(home / "outside/precious"));
            fs::remove_all(home / "aside");
        }
}

/// The folder above is swapped: the same names now lead somewhere else.
TEST(JunkCleaner, RefusesAnotherFolderUnderTheSameRootName) {
    const Sandbox home;
    write(home.cache("app/a"), "x");
    write(home / "elsewhere/app/precious", "x");
    SystemJunkModule module(home.configuration());
    const ScanReport report = module.scan({});
    fs::rename(home / ".cache", home / "old");
    fs::create_directory_symlink(home / "elsewhere", home / ".cache");
    const CleanResult result = module.clean(CleanSelection::all(report, RemovalMethod::permanent), {});
    EXPECT_EQ(result.removedCount, 0);
    EXPECT_EQ(result.errors.size(), 1u);
    EXPECT_TRUE(fs::exists(home / "elsewhere/app/precious"));
}

TEST(JunkCleaner, OneFailureCostsOnlyItself) {
    const Sandbox home;
    write(home.cache("gone/a"), "1234");
    write(home.cache("here/a"), "123");
    fs::create_directory_symlink(home / "tmp", home.cache("link"));
    write(home / "tmp/opened", "1");
    SystemJunkModule module(home.configuration());
    const ScanReport report = module.scan({});
    ASSERT_EQ(report.items.size(), 4u);
    fs::remove_all(home.cache("gone"));
    const FileDescriptor open(::open((home / "tmp/opened").c_str(), O_RDONLY));
    const CleanResult result = module.clean(CleanSelection::all(report, RemovalMethod::trash), {});
    EXPECT_EQ(result.removedCount, 2);
    EXPECT_EQ(std::set(result.errors.begin(), result.errors.end()),
              (std::set{home.cache("gone") + ": No such file or directory",
                        home / "tmp/opened" + ": Still in use: opened"}));
    EXPECT_EQ(result.freedBytes, static_cast<int64_t>(3 + (home / "tmp").size()));
    EXPECT_TRUE(fs::exists(home / "tmp/opened")); // the link was removed, not what it leads to
    for (const CleanedItem& item : result.items)
        EXPECT_NE(item.failure.has_value(), item.landed && isInTrash(*item.landed, item.path)) << item.path;
}

} // namespace
} // namespace vh::junk::test
