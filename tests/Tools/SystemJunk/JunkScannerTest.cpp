#include "Tools/SystemJunk/JunkScanner.h"
#include "Platform/PathParts.h"
#include "Tools/SystemJunk/ItemSize.h"
#include "Tools/SystemJunk/Places.h"

#include "Platform/FileDescriptor.h"
#include "Platform/Removal.h"
#include "support/ChildWork.h"
#include "support/Sandbox.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <fstream>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace vh::junk::test {
namespace {

ScanReport scan(const SystemJunkConfiguration& configuration) {
    return JunkScanner(configuration).scan("system-junk", {});
}

TEST(JunkScanner, ListsTopLevelEntriesByCategoryLargestFirst) {
    const Sandbox home;
    write(home.cache("small/a"), "123");
    write(home.cache("large/deep/b"), std::string(1000, 'x'));
    write(home.cache("large/.hidden"), std::string(1000, 'x'));
    write(home.cache(".hidden/c"), "x");
    write(home.cache("CloudKit/c"), "x");
    write(home.cache("Varnholt/c"), "x");
    write(home / ".local/state/app/app.log", "12");
    write(home / ".local/state/nvim/undo", "12");
    write(home / "tmp/scratch", "1");
    const ScanReport report = scan(home.configuration());

    std::vector<std::string> lines;
    for (const ScanItem& item : report.items)
        lines.push_back(item.category + " " + fs::path(item.path).filename().string() + " " +
                        std::to_string(item.byteSize));
    EXPECT_EQ(lines, (std::vector<std::string>{"Caches large 1000", "Caches small 3", "Logs app 2",
                                               "Temporary scratch 1"}));
}

TEST(JunkScanner, LinksAreLinksAndOddNamesAreNames) {
    const Sandbox home;
    write(home / "outside/precious", std::string(5000, 'x'));
    fs::create_directory_symlink(home / "outside", home.cache("link"));
    write(home.cache("two\nlines\xff: x"), "1");
    const ScanReport report = scan(home.configuration());
    ASSERT_EQ(paths(report), (std::set{home.cache("link"), home.cache("two\nlines\xff: x")}));
    EXPECT_EQ(report.items[0].byteSize, static_cast<int64_t>((home / "outside").size()));
    EXPECT_EQ(report.items[0].identity, identityOf(home.cache("link")));
}

TEST(JunkScanner, NeverListsWhatHoldsTheHomeTheDatabaseOrTheWorkingFolder) {
    const vh::test::TempDir temporary;
    write(temporary / "junk/a", "x");
    write(temporary / "me/.cache/app/a", "x");
    write(temporary / "database/runs.jsonl", "x");
    write(temporary / "work/a", "x");
    fs::create_directory_symlink(temporary / "me", temporary / "alias");
    Folders folders{.home = temporary / "alias",
                    .caches = temporary / "alias/.cache",
                    .logs = temporary / "me/state",
                    .data = temporary / "me/data",
                    .config = temporary / "me/config",
                    .runtime = temporary / "run/1",
                    .temporary = temporary.path()};
    write(temporary / "run/1/socket-to-be", "x");

    const auto before = fs::current_path();
    fs::current_path(temporary / "work");
    const ScanReport report = scan(SystemJunkConfiguration::userDefaults(folders, temporary / "database"));
    fs::current_path(before);
    // "alias" itself is a way home too.
    EXPECT_EQ(paths(report), (std::set{temporary / "junk", temporary / "alias/.cache/app"}));
}

/// The variables that name the folders may say anything.
TEST(JunkScanner, ARootThatIsOrHoldsWhatAPersonOwnsIsNoRoot) {
    const Sandbox home;
    fs::create_directories(home / ".local/share");
    fs::create_directories(home / ".config");
    fs::create_directory_symlink(home / "", home / "homeByLink");
    fs::create_directory_symlink(home / ".cache", home / "cachesByLink");
    for (const auto& wrong :
         {home / "", fs::path(home / "").parent_path().parent_path().string(), home / "homeByLink",
          home / ".local/share", home / ".config", home / ".local"}) {
        Folders folders = Folders::ofUser();
        folders.caches = wrong;
        folders.logs = wrong;
        EXPECT_EQ(SystemJunkConfiguration::userDefaults(folders).allowlist.allowedPrefixes(),
                  std::vector<std::string>{home / "tmp"})
            << wrong;
        folders = Folders::ofUser();
        folders.logs = home / "cachesByLink"; // the same folder once more
        folders.temporary = wrong;
        const bool isAbove = wrong != home / "" && isAtOrBelow(home / "x", wrong);
        EXPECT_EQ(SystemJunkConfiguration::userDefaults(folders).allowlist.allowedPrefixes(),
                  isAbove ? (std::vector<std::string>{home / ".cache", wrong})
                          : std::vector<std::string>{home / ".cache"})
            << wrong;
    }
}

TEST(JunkScanner, LeavesOutWhatRunningProgramsHold) {
    const Sandbox home;
    write(home / "tmp/free", "x");
    write(home / "tmp/held/file", "x");
    const FileDescriptor open(::open((home / "tmp/held/file").c_str(), O_RDONLY));
    ASSERT_TRUE(open);
    ASSERT_EQ(::mkfifo((home / "tmp/pipe").c_str(), 0600), 0);
    fs::create_directories(home.cache("talks"));
    ASSERT_EQ(::mkfifo(home.cache("talks/pipe").c_str(), 0600), 0);
    const FileDescriptor server(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address{.sun_family = AF_UNIX};
    const std::string name = home.cache("socket");
    ASSERT_LT(name.size(), sizeof(address.sun_path));
    std::ranges::copy(name, address.sun_path);
    ASSERT_EQ(::bind(server.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_EQ(paths(scan(home.configuration())), std::set{home / "tmp/free"});
}

TEST(JunkScanner, LeavesOtherUsersTemporaryEntriesAlone) {
    const Sandbox home;
    write(home / "tmp/entry", "x");
    auto configuration = home.configuration();
    ASSERT_EQ(configuration.owner, ::geteuid());
    EXPECT_EQ(paths(scan(configuration)), std::set{home / "tmp/entry"});
    configuration.owner = ::geteuid() + 1; // somebody else cleans
    EXPECT_EQ(paths(scan(configuration)), std::set<std::string>());
}

TEST(JunkScanner, UnreadableFoldersCostOnlyThemselves) {
    const vh::test::TempDir dir;
    fs::permissions(dir.path(), fs::perms::all);
    const auto outcome = vh::test::runUnprivileged([&] {
        write(dir / "root/item/closed/a", "12345");
        write(dir / "root/item/open", "12");
        write(dir / "root/readonly", "1");
        fs::permissions(dir / "root/item/closed", fs::perms::none);
        fs::permissions(dir / "root/readonly", fs::perms::owner_read);
        fs::create_directories(dir / "barred");
        fs::permissions(dir / "barred", fs::perms::none);
        const ScanReport report = scan(SystemJunkConfiguration::fixture(dir / "root"));
        ASSERT_EQ(paths(report), std::set{dir / "root/item"});
        EXPECT_EQ(report.items[0].byteSize, 2);
        EXPECT_TRUE(scan(SystemJunkConfiguration::fixture(dir / "barred")).items.empty());
        fs::permissions(dir / "root/item/closed", fs::perms::owner_all);
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
    EXPECT_TRUE(scan(SystemJunkConfiguration::fixture(dir / "missing")).items.empty());
}

TEST(JunkScanner, MeasuresTheFirstEntriesOfAHugeFolder) {
    const vh::test::TempDir dir;
    fs::create_directories(dir / "root/huge");
    for (int i = 0; i < 30000; ++i)
        std::ofstream(dir / "root/huge/" + std::to_string(i)) << "123";
    const ScanReport report = scan(SystemJunkConfiguration::fixture(dir / "root"));
    ASSERT_EQ(report.items.size(), 1u);
    EXPECT_EQ(report.items[0].byteSize, 60000);
    EXPECT_EQ(measureFolder(dir / "root/huge", 40000, {}).bytes, 90000);
}

TEST(JunkScanner, MeasuresDeepFoldersWithFewDescriptors) {
    const vh::test::TempDir dir;
    constexpr int depth = 2100;
    constexpr int branches = 20; // more inodes would only keep the file system busy
    const std::string root = dir / "root";
    fs::create_directories(root);
    FileDescriptor at(::open(root.c_str(), O_RDONLY | O_DIRECTORY));
    for (int i = 0; i < depth; ++i) {
        ASSERT_EQ(::mkdirat(at.get(), "folder", 0700), 0);
        if (i % (depth / branches) == 0) {
            ASSERT_EQ(::mkdirat(at.get(), "beside", 0700), 0);
            for (const char* name : {"file", "beside/file"}) {
                const FileDescriptor file(::openat(at.get(), name, O_WRONLY | O_CREAT, 0600));
                ASSERT_EQ(::write(file.get(), "12", 2), 2);
            }
        }
        at = FileDescriptor(::openat(at.get(), "folder", O_RDONLY | O_DIRECTORY));
        ASSERT_TRUE(at);
    }
    const auto outcome = vh::test::runInChild([&] {
        const rlimit few{80, 80};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        EXPECT_EQ(measureFolder(root, 20000, {}).bytes, 4 * branches);
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
    removePermanently(root); // paths this long are beyond the standard library
}

TEST(JunkScanner, StopsWhenAsked) {
    const Sandbox home;
    write(home.cache("app/a"), "x");
    JobControl control;
    control.cancel.cancel();
    EXPECT_THROW(JunkScanner(home.configuration()).scan("system-junk", control), Cancelled);
}

} // namespace
} // namespace vh::junk::test
