#include "Tools/FolderSync/work/FolderWatcher.h"

#include "Automation/Worker.h"
#include "support/ChildWork.h"
#include "support/TempDir.h"
#include "support/TurnedLoop.h"
#include "support/UserLimit.h"

#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <gmock/gmock.h>

namespace vh::automation::test {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::seconds;
using vh::test::TempDir;
using vh::test::TurnedLoop;

size_t threads() {
    return static_cast<size_t>(std::distance(fs::directory_iterator("/proc/self/task"), {}));
}

/// A watcher whose time the test turns.
struct Watching {
    explicit Watching(const std::string& folder)
        : watcher(loop, worker, folder, {}, seconds(2),
                  {.onStarted = [this] { isStarted = true; },
                   .onChange = [this] { ++changes; },
                   .onRootChanged = [this] { isGone = true; },
                   .onFailed =
                       [this](const SystemError& why) {
                           failure = why.what();
                       }}) {}

    bool start() {
        return loop.waitUntil("it watches or not", [&] { return isStarted || !failure.empty(); }) &&
               isStarted;
    }
    /// Lets time pass in small steps, none of which overtakes a walk.
    void pass(milliseconds time) {
        constexpr milliseconds step{50};
        for (milliseconds passed{0}; passed < time; passed += step) {
            loop.pump();
            loop.waitUntil("no walk is under way", [&] { return threads() == threadsBefore; });
            loop.advance(step);
        }
    }

    const size_t threadsBefore = threads();
    TurnedLoop loop;
    Worker worker{loop};
    int changes = 0;
    bool isStarted = false, isGone = false;
    std::string failure;
    FolderWatcher watcher;
};

void write(const std::string& path) {
    std::ofstream(path, std::ios::app) << "text";
}

TEST(FolderWatcher, tellsOnceTwoSecondsAfterABurst) {
    const TempDir folder;
    Watching it(folder.path());
    ASSERT_TRUE(it.start());
    EXPECT_TRUE(it.watcher.isRunning());
    for (int i = 0; i < 4; ++i) {
        fs::create_directories(folder / fmt::format("{}/in", i));
        write(folder / fmt::format("{}/in/file", i));
        it.pass(milliseconds(1500));
        EXPECT_EQ(it.changes, 0) << "the burst goes on";
    }
    it.pass(seconds(1));
    EXPECT_EQ(it.changes, 1);
    it.pass(seconds(10));
    EXPECT_EQ(it.changes, 1);
    for (int i = 0; i < 310; ++i) {
        write(folder / "log");
        it.pass(seconds(1));
    }
    EXPECT_EQ(it.changes, 2) << "one that never ends is told of nevertheless";
}

TEST(FolderWatcher, saysWhenItCannotGoOn) {
    const TempDir top;
    fs::create_directories(top / "folder/in");
    Watching it(top / "folder");
    ASSERT_TRUE(it.start());
    write(top / "folder/in/file");
    fs::rename(top / "folder", top / "moved");
    EXPECT_TRUE(it.loop.waitUntil("it is gone", [&] { return it.isGone; }));
    EXPECT_FALSE(it.watcher.isRunning());
    it.pass(seconds(3));
    EXPECT_EQ(it.changes, 0);

    Watching none(top / "none");
    EXPECT_FALSE(none.start());
    EXPECT_EQ(none.failure, top / "none: No such file or directory");

    const auto outcome = vh::test::runInChild([&] {
        vh::test::setUserLimit("max_inotify_watches", 2);
        Watching full(top / "moved");
        full.start();
        fs::create_directory(top / "moved/more");
        full.loop.waitUntil("the limit is met", [&] { return !full.failure.empty(); });
        EXPECT_FALSE(full.watcher.isRunning());
        throw std::runtime_error(full.failure);
    });
    EXPECT_THAT(outcome.message, testing::HasSubstr("Its 3 folders are more than may be watched"));
}

} // namespace
} // namespace vh::automation::test
