#include "Platform/Files.h"

#include "Platform/FileIdentity.h"
#include "Platform/FileLock.h"
#include "Platform/FolderReader.h"
#include "Platform/PathParts.h"
#include "Platform/Process.h"
#include "Platform/SystemError.h"
#include "support/ErrorOf.h"
#include "support/FaultInjector.h"
#include "support/SmallDisk.h"

#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace vh;
using namespace vh::test;
using testing::HasSubstr;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

namespace {

unsigned modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

TEST(PathParts, areTextAlone) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"/a/b", "/a", "b"}, {"/a/b//", "/a", "b"}, {"/a", "/", "a"},  {"a", ".", "a"},
        {"/", "/", ""},      {"", ".", ""},         {"a//b", "a", "b"}};
    for (const auto& [path, folder, name] : rows) {
        EXPECT_EQ(splitPath(path).folder, folder) << path;
        EXPECT_EQ(splitPath(path).name, name) << path;
    }
    EXPECT_EQ(standardisedPath("/a/./b/../../../c//"), "/c");
    EXPECT_EQ(standardisedPath("../a/.."), "..");
    EXPECT_EQ(standardisedPath("//"), "/");
    for (const char* below : {"/a/b", "/a/b/c"}) {
        EXPECT_TRUE(isBelow(below, "/a") && isBelow(below, "/a/") && isBelow(below, "/")) << below;
    }
    for (const char* notBelow : {"/a", "/a/", "/ab", "/ab/c", "/", "a/b", ""}) {
        EXPECT_FALSE(isBelow(notBelow, "/a")) << notBelow;
    }
    for (const char* at : {"/a", "/a/"}) {
        EXPECT_TRUE(isAtOrBelow(at, "/a") && isAtOrBelow(at, "/a/") && !isBelow(at, "/a/")) << at;
    }
    EXPECT_TRUE(isAtOrBelow("/", "/") && isBelow("a/b", "a"));
    EXPECT_FALSE(isBelow("/", "/") || isAtOrBelow("/ab", "/a"));
}

TEST(AtomicWrite, keepsTheOldFileWholeThroughEveryFault) {
    const TempDir folder;
    const std::string path = folder / "settings";
    const std::string oldText(2000, 'o');
    const std::string newText(5000, 'n');
    size_t failed = 0;
    forEachFault([&] { std::ofstream(path) << oldText; }, [&] { writeFileAtomically(path, newText); },
                 [&](const FaultPoint& point) {
                     const std::string text = readFile(path);
                     EXPECT_TRUE(text == oldText || text == newText);
                     EXPECT_TRUE(point.thrown || text == newText);
                     EXPECT_THAT(point.thrown.value_or(path), HasSubstr(folder.path()));
                     EXPECT_THAT(childNames(folder.path()), UnorderedElementsAre("settings"));
                     failed += point.thrown.has_value();
                 });
    EXPECT_GT(failed, 5u);
}

TEST(AtomicWrite, keepsTheOldFileWholeThroughEveryKill) {
    const TempDir folder;
    const std::string path = folder / "settings";
    const auto setUp = [&] {
        fs::remove_all(folder.path());
        fs::create_directory(folder.path());
        std::ofstream(path) << "old";
    };
    forEachKill(
        setUp, [&] { writeFileAtomically(path, "newer text"); },
        [&](const FaultPoint&) {
            const std::string text = readFile(path);
            EXPECT_TRUE(text == "old" || text == "newer text");
            for (const std::string& name : childNames(folder.path()))
                EXPECT_TRUE(name == "settings" || name.ends_with(".varnholt-partial")) << name;
        });
}

TEST(AtomicWrite, flushesTheFileBeforeTheRenameAndTheFolderAfterIt) {
    const TempDir folder;
    countFileCalls([&] { writeFileAtomically(folder / "file", "text"); });
    std::vector<std::string> order;
    for (const FileCall& call : interception().calls)
        if (call.group == CallGroup::flush || call.group == CallGroup::name)
            order.emplace_back(call.name);
    EXPECT_THAT(order, testing::ElementsAre("fsync", "renameat", "fsync"));
}

TEST(AtomicWrite, aFullDiskLeavesTheOldFile) {
    const auto outcome = onSmallDisk(256 << 10, [](const std::string& disk, SmallDisk) {
        const std::string path = disk + "/file";
        writeFileAtomically(path, "old");
        EXPECT_THROW(writeFileAtomically(path, std::string(1 << 20, 'x')), SystemError);
        EXPECT_EQ(readFile(path), "old");
        EXPECT_EQ(childNames(disk).size(), 1u);
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
}

TEST(AtomicWrite, keepsLinksAndModes) {
    const TempDir folder;
    fs::create_directory(folder / "real");
    fs::create_symlink("real/file", folder / "link");
    fs::create_symlink(folder / "link", folder / "second");
    writeFileAtomically(folder / "second", "one"); // the chain ends in nothing yet
    EXPECT_EQ(readFile(folder / "real/file"), "one");
    EXPECT_EQ(modeOf(folder / "real/file"), 0600u);
    ASSERT_EQ(::chmod((folder / "real/file").c_str(), 0640), 0);
    writeFileAtomically(folder / "link", "two");
    EXPECT_EQ(readFile(folder / "real/file"), "two");
    EXPECT_EQ(modeOf(folder / "real/file"), 0640u);
    EXPECT_TRUE(fs::is_symlink(folder / "link") && fs::is_symlink(folder / "second"));

    fs::create_symlink("circle", folder / "circle");
    EXPECT_THAT(errorOf([&] { writeFileAtomically(folder / "circle", ""); }), HasSubstr("symbolic links"));
    EXPECT_THAT(errorOf([&] { writeFileAtomically(folder / "real", ""); }), HasSubstr("Is a directory"));
    EXPECT_THAT(errorOf([&] { writeFileAtomically("/dev/null", ""); }), HasSubstr("Not a regular file"));
    const std::string longName(255, 'n');
    writeFileAtomically(folder / longName, "fits");
    EXPECT_EQ(readFile(folder / longName), "fits");
}

TEST(Files, tellAbsenceFromFailure) {
    const TempDir folder;
    EXPECT_EQ(readFileIfPresent(folder / "none"), std::nullopt);
    EXPECT_EQ(errorOf([&] { readFile(folder / "none"); }), (folder / "none") + ": No such file or directory");
    EXPECT_THAT(errorOf([&] { readFileIfPresent(folder.path()); }), HasSubstr("Is a directory"));
    EXPECT_THAT(readFile("/proc/self/status"), HasSubstr("Pid:")); // of size 0 by its status
    std::ofstream(folder / "file") << "x";
    EXPECT_EQ(statusOf(folder / "file")->byteSize, 1);
    fs::create_symlink("file", folder / "link");
    EXPECT_EQ(statusOf(folder / "link")->type, FileType::link);
    EXPECT_NE(identityOf(folder / "link"), identityOf(folder / "file"));
}

TEST(Files, foldersAreMadeForTheUserAlone) {
    const TempDir folder;
    makeFolders(folder / "a/b/c/");
    makeFolders(folder / "a/b/c");
    EXPECT_EQ(modeOf(folder / "a/b"), 0700u);
    std::ofstream(folder / "file") << "x";
    EXPECT_THAT(errorOf([&] { makeFolders(folder / "file"); }), HasSubstr("Not a directory"));
    EXPECT_THAT(errorOf([&] { makeFolders(folder / "file/x"); }), HasSubstr("Not a directory"));
    fs::permissions(folder.path(), fs::perms::others_exec, fs::perm_options::add);
    EXPECT_THAT(runUnprivileged([&] { makeFolders(folder / "denied"); }).message,
                HasSubstr("Permission denied"));
}

TEST(MoveFile, movesAcrossVolumesWholeOrNotAtAll) {
    const TempDir folder;
    const TmpfsMount disk(1 << 20);
    ASSERT_TRUE(disk) << "needs the right to mount";
    const auto setUp = [&] {
        fs::remove_all(disk / "to");
        fs::remove_all(folder / "from");
        fs::create_directories(folder / "from/sub");
        std::ofstream(folder / "from/sub/file") << std::string(3000, 'x');
        fs::create_symlink("/etc", folder / "from/link");
        fs::last_write_time(folder / "from/sub/file", fs::file_time_type{} + std::chrono::hours(24));
    };
    const auto isWhole = [](const std::string& at) {
        return statusOf(at + "/sub/file") && statusOf(at + "/sub/file")->byteSize == 3000 &&
               fs::is_symlink(at + "/link");
    };
    setUp();
    const int64_t time = statusOf(folder / "from/sub/file")->modifiedSeconds;
    moveFile(folder / "from", disk / "to");
    EXPECT_TRUE(isWhole(disk / "to"));
    EXPECT_EQ(statusOf(disk / "to/sub/file")->modifiedSeconds, time);
    EXPECT_FALSE(identityOf(folder / "from"));

    forEachFault(
        setUp, [&] { moveFile(folder / "from", disk / "to"); },
        [&](const FaultPoint& point) {
            EXPECT_TRUE(isWhole(folder / "from") || isWhole(disk / "to"));
            EXPECT_TRUE(point.thrown || isWhole(disk / "to"));
        });
    setUp();
    std::ofstream(folder / "from/huge") << std::string(2 << 20, 'x');
    EXPECT_THAT(errorOf([&] { moveFile(folder / "from", disk / "to"); }), HasSubstr("No space left"));
    EXPECT_TRUE(isWhole(folder / "from"));
    EXPECT_TRUE(childNames(disk.path()).empty());
}

TEST(FolderReader, listsNamesOfAnyBytesWithTheirTypes) {
    const TempDir folder;
    std::ofstream(folder / "file") << "12345";
    std::ofstream(folder / "bad\xff\nname") << "";
    fs::create_directory(folder / "sub");
    fs::create_symlink("sub", folder / "link");
    FolderReader reader(folder.path());
    std::map<std::string, FileType> found;
    while (const auto entry = reader.next())
        found[std::string(entry->name)] = entry->type;
    EXPECT_THAT(found, UnorderedElementsAre(testing::Pair("file", FileType::file),
                                            testing::Pair("bad\xff\nname", FileType::file),
                                            testing::Pair("sub", FileType::folder),
                                            testing::Pair("link", FileType::link)));
    EXPECT_EQ(reader.usage("file").value().byteSize, 5);
    EXPECT_FALSE(reader.usage("gone"));
    EXPECT_FALSE(FolderReader(reader, "sub").next());
    EXPECT_THROW(FolderReader(reader, "link"), SystemError);
    for (int i = 0; i < 3000; ++i)
        std::ofstream(folder / ("sub/a rather long name for a small file " + std::to_string(i)));
    EXPECT_EQ(childNames(folder / "sub").size(), 3000u);
}

TEST(FileLock, isHeldByOneProcessUntilItEnds) {
    const TempDir folder;
    const std::string path = folder / "lock";
    {
        const FileLock held(path);
        EXPECT_TRUE(held);
        EXPECT_FALSE(FileLock::tryLock(path));
        EXPECT_EQ(runInChild([&] {
                      if (FileLock::tryLock(path))
                          throw std::runtime_error("two processes hold it");
                  }).message,
                  "");
        // A program started meanwhile does not inherit the lock.
        EXPECT_TRUE(runProcess({.arguments = {"true"}}).succeeded());
    }
    const ChildOutcome killed = runInChild([&] {
        const FileLock lock(path);
        ::kill(::getpid(), SIGKILL);
    });
    EXPECT_EQ(killed.status, 128 + SIGKILL);
    EXPECT_TRUE(FileLock::tryLock(path));
    fs::create_symlink("elsewhere", folder / "link");
    EXPECT_THROW(FileLock(folder / "link"), SystemError);
}

} // namespace
