#include "Platform/TreeEvents.h"

#include "Platform/Files.h"
#include "Platform/macOS/TreeEventFlags.h"
#include "support/ErrorOf.h"
#include "support/SmallDisk.h"
#include "support/UserLimit.h"
#include "support/WaitUntil.h"

#include <atomic>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <gmock/gmock.h>
#include <poll.h>
#include <random>
#include <sys/stat.h>
#include <thread>

using namespace vh;
using namespace vh::test;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

void write(const std::string& path) {
    std::ofstream(path, std::ios::app) << "text";
}

/// Takes all that waits; what the watcher does itself may bring more.
TreeChanges changesOf(TreeEvents& tree) {
    TreeChanges all;
    pollfd ready{tree.descriptor(), POLLIN, 0};
    while (::poll(&ready, 1, 0) == 1) {
        const TreeChanges more = tree.take();
        all.something = all.something || more.something;
        all.isGone = all.isGone || more.isGone;
        if (more.limit)
            all.limit = more.limit;
    }
    return all;
}

size_t foldersIn(const std::string& top) {
    size_t count = 1;
    for (const auto& each : fs::recursive_directory_iterator(top))
        count += each.is_directory() && !each.is_symlink() ? 1 : 0;
    return count;
}

TEST(TreeEvents, tellsOfAllBelowAndOfNothingElse) {
    const TempDir top, other;
    fs::create_directories(top / "a/b");
    fs::create_directories(top / "leaves/deep/er");
    fs::create_directories(other / "arrives/deep/er");
    write(top / "a/b/old");
    fs::create_directory_symlink(other.path(), top / "link");
    TreeEvents tree(top.path());
    EXPECT_EQ(tree.folderCount(), 6);
    const auto tells = [&](const char* what, const std::function<void()>& work) {
        EXPECT_FALSE(changesOf(tree).something) << "before: " << what;
        work();
        return changesOf(tree).something;
    };
    EXPECT_TRUE(tells("a file grows", [&] { write(top / "a/b/old"); }));
    EXPECT_TRUE(tells("a file goes", [&] { fs::remove(top / "a/b/old"); }));
    EXPECT_TRUE(tells("folders come", [&] { fs::create_directories(top / "new/in/side"); }));
    EXPECT_TRUE(tells("a file comes there", [&] { write(top / "new/in/side/file"); }));
    EXPECT_TRUE(tells("its date is set", [&] { fs::last_write_time(top / "new/in/side/file", {}); }));
    EXPECT_TRUE(tells("a folder is renamed", [&] { fs::rename(top / "new/in", top / "a/was-in"); }));
    EXPECT_TRUE(tells("a folder comes there", [&] { fs::create_directory(top / "a/was-in/side/more"); }));
    EXPECT_TRUE(tells("a file comes there too", [&] { write(top / "a/was-in/side/more/file"); }));
    EXPECT_TRUE(tells("a tree arrives", [&] { fs::rename(other / "arrives", top / "arrived"); }));
    EXPECT_TRUE(tells("and changes", [&] { write(top / "arrived/deep/er/file"); }));
    EXPECT_TRUE(tells("a tree leaves", [&] { fs::rename(top / "leaves", other / "left"); }));
    EXPECT_FALSE(tells("which changes then", [&] {
        write(other / "left/deep/er/file");
        fs::create_directory(other / "left/deep/new");
    }));
    EXPECT_FALSE(tells("behind a link", [&] { write(other / "file"); }));
    EXPECT_TRUE(tells("a tree goes", [&] { fs::remove_all(top / "a"); }));
    EXPECT_EQ(tree.folderCount(), foldersIn(top.path()));
}

TEST(TreeEvents, missesNoFolderOfThoseThatComeAndGoMeanwhile) {
    const TempDir top, outside;
    TreeEvents tree(top.path());
    std::atomic<bool> isOver = false;
    std::thread busy([&] {
        std::mt19937 random(7);
        const auto any = [&] {
            return top / fmt::format("{}/{}", random() % 4, random() % 4);
        };
        std::error_code error; // half of it cannot be done, which is as well
        for (int i = 0; i < 4000; ++i) {
            switch (random() % 6) {
            case 0:
                fs::remove_all(any(), error);
                break;
            case 1:
                fs::rename(any(), any() + fmt::format("/{}", random() % 3), error);
                break;
            case 2:
                fs::rename(any(), outside / std::to_string(i), error);
                break;
            case 3:
                fs::rename(outside / std::to_string(i - random() % 20), any(), error);
                break;
            default:
                fs::create_directories(any() + fmt::format("/{}/x", random() % 3), error);
            }
        }
        isOver = true;
    });
    while (!isOver)
        changesOf(tree);
    busy.join();
    changesOf(tree);
    EXPECT_EQ(tree.folderCount(), foldersIn(top.path()));
    for (const auto& each : fs::recursive_directory_iterator(top.path()))
        if (each.is_directory()) {
            write(each.path() / "file");
            EXPECT_TRUE(changesOf(tree).something) << each.path();
        }
    write(outside / "file");
    for (const auto& each : fs::recursive_directory_iterator(outside.path()))
        if (each.is_directory())
            write(each.path() / "file");
    EXPECT_FALSE(changesOf(tree).something);
}

TEST(TreeEvents, looksAgainWhenTheSystemDroppedEvents) {
    const TempDir top, outside;
    fs::create_directories(top / "leaves/in");
    const std::string names[]{top / "a", top / "b"};
    for (const std::string& name : names)
        write(name);
    TreeEvents tree(top.path());
    const int most = std::stoi(readFile("/proc/sys/fs/inotify/max_queued_events"));
    for (int i = 0; i < most + 2; ++i) // two events of one kind in a row would be one
        ASSERT_EQ(::chmod(names[i % 2].c_str(), 0600), 0);
    fs::create_directories(top / "unheard/of");
    fs::rename(top / "leaves", outside / "left");
    EXPECT_TRUE(changesOf(tree).something);
    EXPECT_EQ(tree.folderCount(), 3);
    write(top / "unheard/of/file");
    EXPECT_TRUE(changesOf(tree).something);
    write(outside / "left/in/file");
    EXPECT_FALSE(changesOf(tree).something);
}

TEST(TreeEvents, saysWhenTheTreeIsGone) {
    using Work = std::function<void(const TempDir&)>;
    const Work ways[]{[](const TempDir& at) { fs::remove_all(at / "above/folder"); },
                      [](const TempDir& at) { fs::rename(at / "above/folder", at / "moved"); },
                      [](const TempDir& at) {
                          fs::rename(at / "above", at / "elsewhere");
                          write(at / "elsewhere/folder/in/file"); // the next that comes tells
                      }};
    for (const Work& way : ways) {
        const TempDir top;
        fs::create_directories(top / "above/folder/in");
        TreeEvents tree(top / "above/folder");
        way(top);
        EXPECT_TRUE(changesOf(tree).isGone) << &way - ways;
    }
    auto disk = std::make_optional<TmpfsMount>(1 << 20);
    ASSERT_TRUE(*disk) << "needs the right to mount";
    fs::create_directory(*disk / "in");
    TreeEvents inner(*disk / "in"), whole(disk->path());
    disk.reset();
    EXPECT_TRUE(waitUntil("it is unmounted", [&] { return changesOf(inner).isGone; }));
    EXPECT_TRUE(waitUntil("it is unmounted", [&] { return changesOf(whole).isGone; }));
    EXPECT_EQ(errorOf([&] { TreeEvents("/none"); }), "/none: No such file or directory");
    EXPECT_TRUE(endsTreeEvents(0x20) && endsTreeEvents(0x80 | 0x1) && !endsTreeEvents(0x5f));
}

TEST(TreeEvents, saysHowFarTheLimitIsToBeRaised) {
    const TempDir top;
    for (int i = 0; i < 20; ++i)
        fs::create_directories(top / fmt::format("{}/in", i));
    EXPECT_EQ(runInChild([&] {
                  setUserLimit("max_inotify_watches", 30);
                  TreeEvents(top.path());
              }).message,
              top.path() + ": Its 41 folders are more than may be watched, for the system's limit is 30; set "
                           "fs.inotify.max_user_watches=64");
    EXPECT_THAT(runInChild([&] {
                    setUserLimit("max_inotify_watches", 45);
                    TreeEvents tree(top.path());
                    for (int i = 0; i < 10; ++i)
                        fs::create_directory(top / fmt::format("{}/more", i));
                    const TreeChanges changes = changesOf(tree);
                    if (changes.limit)
                        throw WatchLimitReached(top.path(), *changes.limit);
                }).message,
                HasSubstr("Its 51 folders"));
}

} // namespace
