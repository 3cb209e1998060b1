#include "Platform/Removal.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/SystemError.h"
#include "support/ErrorOf.h"
#include "support/FaultInjector.h"
#include "support/SmallDisk.h"

#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace vh;
using namespace vh::test;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

void put(const std::string& path) {
    std::ofstream(path) << "text";
}

TEST(Removal, takesLinksAndNeverWhatTheyPointTo) {
    const TempDir folder;
    fs::create_directories(folder / "kept/sub");
    put(folder / "kept/sub/file");
    fs::create_directories(folder / "gone/sub");
    fs::create_symlink(folder / "kept", folder / "gone/sub/link");
    fs::create_symlink(folder / "kept/sub/file", folder / "gone/file");
    fs::create_symlink("kept", folder / "link");
    removePermanently(folder / "gone/");
    removePermanently(folder / "link/");
    EXPECT_THAT(childNames(folder.path()), testing::ElementsAre("kept"));
    EXPECT_TRUE(identityOf(folder / "kept/sub/file"));
    for (const char* path : {"/", "", ".", "..", "a/.."})
        EXPECT_THROW(removePermanently(path), SystemError) << path;
    EXPECT_EQ(errorOf([&] { removePermanently(folder / "gone"); }),
              (folder / "gone") + ": No such file or directory");
}

TEST(Removal, refusesWhatWasSwapped) {
    const TempDir folder;
    put(folder / "file");
    fs::create_directory(folder / "sub");
    put(folder / "sub/file");
    EXPECT_THAT(errorOf([&] { removePermanently(folder / "sub", identityOf(folder / "file")); }),
                HasSubstr("Something else"));
    EXPECT_THAT(errorOf([&] { removePermanently(folder / "file", identityOf(folder / "sub")); }),
                HasSubstr("Something else"));
    EXPECT_TRUE(identityOf(folder / "sub/file"));
    removePermanently(folder / "sub", identityOf(folder / "sub"));
    removePermanently(folder / "file", identityOf(folder / "file"));
    EXPECT_TRUE(childNames(folder.path()).empty());
}

TEST(Removal, goesThousandsOfFoldersDeepWithFewDescriptors) {
    const TempDir folder;
    constexpr int depth = 2100;
    int at = ::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < depth; ++i) {
        ASSERT_EQ(::mkdirat(at, "a folder", 0700), 0);
        const int below = ::openat(at, "a folder", O_RDONLY | O_DIRECTORY);
        if (i % 100 == 0) // more inodes would only keep the file system busy
            ::close(::openat(below, "file", O_WRONLY | O_CREAT, 0600));
        ::close(at);
        at = below;
    }
    ::close(at);
    const ChildOutcome outcome = runInChild([&] {
        const rlimit limit{128, 128};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
        removePermanently(folder / "a folder");
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
    EXPECT_TRUE(childNames(folder.path()).empty());
}

TEST(Removal, givesItselfTheRightsInItsOwnFolders) {
    const TempDir folder;
    ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
    const ChildOutcome outcome = runUnprivileged([&] {
        fs::create_directories(folder / "top/unwritable");
        fs::create_directories(folder / "top/unreadable/sub");
        put(folder / "top/unwritable/file");
        put(folder / "top/unreadable/sub/file");
        ::chmod((folder / "top/unwritable").c_str(), 0555);
        ::chmod((folder / "top/unreadable").c_str(), 0000);
        removePermanently(folder / "top");
    });
    EXPECT_EQ(outcome.message, "");
    EXPECT_TRUE(childNames(folder.path()).empty());

    fs::create_directory(folder / "others");
    put(folder / "others/file");
    ASSERT_EQ(::chmod((folder / "others").c_str(), 0755), 0);
    EXPECT_EQ(runUnprivileged([&] { removePermanently(folder / "others"); }).message,
              (folder / "others/file") + ": Permission denied");
    EXPECT_EQ(runUnprivileged([&] { removePermanently(folder / "others/file"); }).message,
              (folder / "others/file") + ": Permission denied");
}

TEST(Removal, doesNotEnterAnotherVolume) {
    const TempDir folder;
    const TmpfsMount disk(1 << 20);
    ASSERT_TRUE(disk) << "needs the right to mount";
    put(disk / "file");
    fs::create_directories(folder / "top/mounted");
    fs::create_directory(folder / "same");
    put(folder / "same/file");
    // The same volume mounted again at another place is as little the item's as a foreign one.
    for (const std::string& source : {disk.path(), folder / "same"}) {
        ASSERT_EQ(::mount(source.c_str(), (folder / "top/mounted").c_str(), nullptr, MS_BIND, nullptr), 0);
        EXPECT_EQ(errorOf([&] { removePermanently(folder / "top"); }),
                  (folder / "top/mounted") + ": Another volume is mounted here");
        EXPECT_EQ(errorOf([&] { removePermanently(folder / "top/mounted"); }),
                  (folder / "top/mounted") + ": Another volume is mounted here");
        ASSERT_EQ(::umount((folder / "top/mounted").c_str()), 0);
        EXPECT_TRUE(identityOf(source + "/file"));
    }
}

/// Another program swaps a folder of the tree for a link to a treasure, at every moment of the removal.
TEST(Removal, isNotLedAstrayByAFolderSwappedMeanwhile) {
    const TempDir folder;
    fs::create_directories(folder / "treasure/sub");
    for (const char* name : {"treasure/one", "treasure/file", "treasure/sub/file"})
        put(folder / name);
    for (const char* swapped : {"top", "top/sub"}) {
        SCOPED_TRACE(swapped);
        const auto setUp = [&] {
            fs::remove_all(folder / "top");
            fs::remove_all(folder / "aside");
            fs::create_directories(folder / "top/sub/sub");
            put(folder / "top/sub/file");
            put(folder / "top/sub/sub/file");
        };
        const auto swap = [&] {
            std::error_code gone;
            fs::rename(folder / swapped, folder / "aside", gone);
            fs::create_directory_symlink(folder / "treasure", folder / swapped, gone);
        };
        forEachMeddling(
            setUp, swap, [&] { removePermanently(folder / "top"); },
            [&](const FaultPoint&) {
                EXPECT_EQ(childNames(folder / "treasure").size(), 3u);
                EXPECT_EQ(childNames(folder / "treasure/sub").size(), 1u);
            });
    }
}

/// Another program puts a real folder into the place of the one that is to go, at every moment of the removal.
TEST(Removal, takesTheExpectedFolderAndNoneThatTookItsPlace) {
    const TempDir folder;
    std::optional<FileIdentity> expected;
    const auto setUp = [&] {
        fs::remove_all(folder / "top");
        fs::remove_all(folder / "aside");
        for (const char* name : {"top", "other"}) {
            fs::create_directories(folder / name);
            put(folder / (name + std::string("/file")));
        }
        expected = identityOf(folder / "top");
    };
    const auto swap = [&] {
        std::error_code gone;
        fs::rename(folder / "top", folder / "aside", gone);
        fs::rename(folder / "other", folder / "top", gone);
    };
    forEachMeddling(
        setUp, swap, [&] { removePermanently(folder / "top", expected); },
        [&](const FaultPoint&) { EXPECT_TRUE(identityOf(folder / "top/file")); });
}

TEST(Removal, saysWhenSomethingIsLeft) {
    const TempDir folder;
    const auto setUp = [&] {
        fs::create_directories(folder / "top/sub");
        put(folder / "top/sub/file");
        put(folder / "top/file");
    };
    forEachFault(
        setUp, [&] { removePermanently(folder / "top"); },
        [&](const FaultPoint& point) {
            EXPECT_EQ(point.thrown.has_value(), identityOf(folder / "top").has_value())
                << point.thrown.value_or("");
        });
}

} // namespace
