#include "Platform/FolderEvents.h"

#include "Platform/Files.h"
#include "support/ErrorOf.h"
#include "support/SmallDisk.h"
#include "support/TurnedLoop.h"
#include "support/UserLimit.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace vh;
using namespace vh::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

bool isReadable(const FolderEvents& watcher) {
    pollfd descriptor{watcher.descriptor(), POLLIN, 0};
    return ::poll(&descriptor, 1, 0) == 1;
}

TEST(FolderEvents, namesWhatCameWentAndChangedOnce) {
    const TempDir outside;
    const TempDir folder;
    fs::create_directory(folder / "inner");
    std::ofstream(folder / "old") << "text";
    std::ofstream(folder / "leaves") << "text";
    FolderEvents watcher(folder.path());
    EXPECT_FALSE(isReadable(watcher));

    TurnedLoop loop;
    FolderChanges changes;
    const auto watching =
        loop.watch(watcher.descriptor(), MainLoop::Readiness::readable, [&] { changes = watcher.take(); });
    const std::string odd = "odd\n\xff name";
    std::ofstream(folder / odd) << "text";
    std::ofstream(folder / "old", std::ios::app) << "more";
    std::ofstream(folder / "inner/unseen") << "text";
    fs::rename(folder / "leaves", outside / "left");
    fs::rename(outside / "left", folder / "arrives");
    loop.pump();
    EXPECT_THAT(changes.names, ElementsAre("arrives", "leaves", odd, "old"));
    EXPECT_FALSE(changes.lostSome || changes.isGone);
    EXPECT_THAT(watcher.take().names, IsEmpty());
}

TEST(FolderEvents, saysWhenTheFolderIsGone) {
    using Work = std::function<void(const TempDir&)>;
    const Work ways[]{[](const TempDir& at) { fs::remove(at / "above/folder"); },
                      [](const TempDir& at) { fs::rename(at / "above/folder", at / "moved"); },
                      [](const TempDir& at) {
                          fs::rename(at / "above", at / "elsewhere");
                          std::ofstream(at / "elsewhere/folder/file") << "the next that comes tells";
                      }};
    for (const Work& way : ways) {
        const TempDir top;
        fs::create_directories(top / "above/folder");
        FolderEvents watcher(top / "above/folder");
        way(top);
        EXPECT_TRUE(isReadable(watcher));
        EXPECT_TRUE(watcher.take().isGone) << &way - ways;
        EXPECT_TRUE(watcher.take().isGone) << "and stays so";
    }
    auto disk = std::make_optional<TmpfsMount>(1 << 20);
    ASSERT_TRUE(*disk) << "needs the right to mount";
    FolderEvents watcher(disk->path());
    disk.reset();
    TurnedLoop loop;
    loop.waitUntil("the folder is unmounted", [&] { return watcher.take().isGone; });
}

TEST(FolderEvents, saysWhenTheSystemDroppedEvents) {
    const TempDir folder;
    const std::string names[]{folder / "a", folder / "b"};
    for (const std::string& name : names)
        std::ofstream(name) << "text";
    FolderEvents watcher(folder.path());
    const int most = std::stoi(readFile("/proc/sys/fs/inotify/max_queued_events"));
    for (int i = 0; i < most + 2; ++i) // two events of one kind in a row would be one
        ASSERT_EQ(::chmod(names[i % 2].c_str(), 0600), 0);
    bool lostSome = false;
    while (isReadable(watcher))
        lostSome = watcher.take().lostSome || lostSome;
    EXPECT_TRUE(lostSome);
    std::ofstream(folder / "c") << "text";
    const FolderChanges after = watcher.take();
    EXPECT_THAT(after.names, ElementsAre("c"));
    EXPECT_FALSE(after.lostSome);
}

TEST(FolderEvents, saysWhichLimitIsUsedUp) {
    const TempDir folder;
    const auto said = [&](const std::function<void()>& prepare) {
        return runInChild([&] {
                   prepare();
                   FolderEvents(folder.path());
               })
            .message;
    };
    EXPECT_THAT(said([] { setUserLimit("max_inotify_instances", 0); }),
                HasSubstr("inotify/max_user_instances"));
    EXPECT_THAT(said([] { setUserLimit("max_inotify_watches", 0); }), HasSubstr("inotify/max_user_watches"));
#ifndef __SANITIZE_ADDRESS__ // the sanitizers look at an exception's type through a pipe, for which nothing is left
    const auto noDescriptors = [] {
        const rlimit none{3, 3};
        ::setrlimit(RLIMIT_NOFILE, &none);
    };
    EXPECT_THAT(said(noDescriptors), HasSubstr("Too many open files"));
#endif
    EXPECT_EQ(errorOf([&] { FolderEvents(folder / "none"); }), folder / "none: No such file or directory");
    std::ofstream(folder / "file") << "text";
    EXPECT_EQ(errorOf([&] { FolderEvents(folder / "file"); }), folder / "file: Not a directory");
}

} // namespace
