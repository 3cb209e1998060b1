#include "Platform/CopyItem.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "support/ErrorOf.h"
#include "support/FaultInjector.h"
#include "support/SmallDisk.h"

#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace vh;
using namespace vh::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

void write(const std::string& path, const std::string& text, mode_t mode = 0644) {
    std::ofstream(path, std::ios::binary) << text;
    ::chmod(path.c_str(), mode);
}

/// A folder with something of every kind, all of it modified at odd moments.
std::string makeTree(const TempDir& at) {
    const std::string top = at / "tree";
    fs::create_directories(top + "/closed/deep");
    fs::create_directory(top + "/empty");
    write(top + "/large", std::string(300'000, 'x') + "end");
    write(top + "/closed/deep/program", "#!", 04755);
    fs::create_symlink("missing/target", top + "/link");
    ::chmod((top + "/closed").c_str(), 0500);
    int second = 0;
    for (const char* name :
         {"/large", "/closed/deep/program", "/link", "/closed/deep", "/closed", "/empty", ""}) {
        const timespec time{1'000'000'000 + ++second, 123'456'789};
        const timespec times[]{time, time};
        ::utimensat(AT_FDCWD, (top + name).c_str(), times, AT_SYMLINK_NOFOLLOW);
    }
    return top;
}

/// Everything below a folder that a copy has to keep.
std::vector<std::string> facts(const std::string& top) {
    std::vector<std::string> all;
    const auto add = [&](const std::string& path) {
        struct stat status {};
        ::lstat(path.c_str(), &status);
        const std::string text = S_ISREG(status.st_mode)   ? readFile(path)
                                 : S_ISLNK(status.st_mode) ? fs::read_symlink(path).string()
                                                           : "";
        all.push_back(fmt::format("{} {:o} {}.{} {}", path.substr(top.size()),
                                  status.st_mode & ~mode_t{S_ISUID}, status.st_mtim.tv_sec,
                                  status.st_mtim.tv_nsec, std::hash<std::string>()(text)));
    };
    add(top);
    for (const auto& entry : fs::recursive_directory_iterator(top))
        add(entry.path());
    std::ranges::sort(all);
    return all;
}

TEST(CopyItem, keepsEverythingAndFindsFreeNames) {
    const TempDir from;
    const TempDir into;
    const TmpfsMount disk(4 << 20);
    ASSERT_TRUE(disk) << "needs the right to mount";
    const std::string tree = makeTree(from);
    int64_t told = 0;
    const CopiedItem first = copyItem(tree + "/", into.path(), {}, [&](int64_t bytes) { told = bytes; });
    EXPECT_EQ(first.path, into / "tree");
    EXPECT_EQ(first.files, 3);
    EXPECT_EQ(first.bytes, 300'005);
    EXPECT_EQ(told, first.bytes);
    EXPECT_EQ(facts(first.path), facts(tree));
    EXPECT_EQ(facts(copyItem(tree, disk.path(), {}).path), facts(tree)) << "to another file system";
    struct stat program {};
    ASSERT_EQ(::stat((into / "tree/closed/deep/program").c_str(), &program), 0);
    EXPECT_EQ(program.st_mode & 07777, mode_t{0755}) << "a copy runs as nobody else";

    const std::string longName(251, 'n');
    write(from / "photo.old.jpg", "a");
    write(from / ".hidden", "a");
    write(from / (longName + ".txt"), "a");
    const std::pair<std::string, std::string> rows[]{{"tree", "tree 2"},
                                                     {"photo.old.jpg", "photo.old 2.jpg"},
                                                     {".hidden", ".hidden 2"},
                                                     {longName + ".txt", longName.substr(2) + " 2.txt"}};
    for (const auto& [name, second] : rows) {
        if (name != "tree") {
            EXPECT_EQ(copyItem(from / name, into.path(), {}).path, into / name);
        }
        EXPECT_EQ(copyItem(from / name, into.path(), {}).path, into / second);
    }
    EXPECT_NE(readFile(copyItem("/proc/self/status", into.path(), {}).path), "") << "seems to be empty";
}

TEST(CopyItem, refusesWithAReasonAndLeavesNothing) {
    const TempDir from;
    const TempDir into;
    const std::string tree = makeTree(from);
    fs::create_directory(from / "pipes");
    ASSERT_EQ(::mkfifo((from / "pipes/pipe").c_str(), 0600), 0);
    fs::create_symlink(tree + "/empty", from / "inside");
    write(from / "file", "text");
    const std::tuple<std::string, std::string, std::string> rows[]{
        {tree, tree, "into itself"},
        {tree, tree + "/closed/deep", "into itself"},
        {tree, from / "inside", "into itself"},
        {from / "pipes", into.path(), "pipes/pipe: Not a file, folder or link"},
        {from / "pipes/pipe", into.path(), "Not a file, folder or link"},
        {from / "missing", into.path(), "No such file"},
        {from / "file", into / "missing", "No such file"},
        {from / "file", from / "file", "Not a directory"},
        {"/", into.path(), "Invalid argument"},
        {tree + "/..", into.path(), "Invalid argument"},
    };
    for (const auto& [source, folder, reason] : rows)
        EXPECT_THAT(errorOf([&, s = source, f = folder] { copyItem(s, f, {}); }), HasSubstr(reason))
            << source;
    const CancelToken cancel;
    EXPECT_THROW(copyItem(tree, into.path(), cancel, [&](int64_t) { cancel.cancel(); }), Cancelled);
    EXPECT_THAT(childNames(into.path()), IsEmpty());
    EXPECT_THAT(childNames(tree + "/empty"), IsEmpty());
}

TEST(CopyItem, isWholeOrNotThereWhateverFails) {
    const TempDir from;
    const std::string tree = makeTree(from);
    const std::vector<std::string> wanted = facts(tree);
    std::optional<TempDir> into;
    const auto setUp = [&] {
        into.emplace();
    };
    const auto work = [&] {
        copyItem(tree, into->path(), {});
    };
    forEachFault(setUp, work, [&](const FaultPoint& point) {
        if (point.thrown) {
            EXPECT_THAT(childNames(into->path()), IsEmpty()) << point.text();
        } else {
            EXPECT_EQ(facts(*into / "tree"), wanted) << point.text();
        }
        EXPECT_EQ(facts(tree), wanted);
    });
    forEachKill(setUp, work, [&](const FaultPoint& point) {
        for (const std::string& name : childNames(into->path()))
            if (name == "tree") {
                EXPECT_EQ(facts(*into / "tree"), wanted) << point.text();
            } else {
                EXPECT_TRUE(name.ends_with(".varnholt-partial")) << name;
            }
    });
}

TEST(CopyItem, leavesAFullDiskAsItWas) {
    const TempDir from;
    const std::string tree = makeTree(from);
    const auto outcome = onSmallDisk(128 << 10, [&](const std::string& disk, SmallDisk) {
        const std::string said = errorOf([&] { copyItem(tree, disk, {}); });
        if (said.find("No space left") == std::string::npos &&
            said.find("File too large") == std::string::npos)
            throw std::runtime_error(said);
        if (!childNames(disk).empty())
            throw std::runtime_error("something is left");
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
}

} // namespace
