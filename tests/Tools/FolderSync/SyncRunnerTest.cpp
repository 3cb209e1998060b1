#include "Tools/FolderSync/work/SyncRunner.h"

#include "Core/DatabaseLocation.h"
#include "Core/RunJournal.h"
#include "Platform/Desktop.h"
#include "Platform/FileLock.h"
#include "Platform/Files.h"
#include "Tools/FolderSync/SyncEngine.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "Tools/FolderSync/work/SyncWatchFile.h"
#include "support/ChildWork.h"
#include "support/LoopDisk.h"
#include "support/TestDependencies.h"
#include "support/UserLimit.h"

#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <future>
#include <gmock/gmock.h>

namespace vh::automation::test {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using sync::SyncPair;
using sync::WatchState;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class NotedDesktop : public Desktop {
public:
    void notify(const std::string& title, const std::string& text) override {
        said.push_back(title + ": " + text);
    }
    std::optional<milliseconds> idleTime() override { return {}; }
    std::optional<bool> isOnMains() override { return {}; }
    MainLoop::Token watchPower(MainLoop&, std::function<void()>) override { return {}; }
    std::vector<std::string> said;
};

void write(const std::string& path, std::string_view text = "text") {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path) << text;
}

/// A process that leads, with folders below a folder of its own.
class SyncRunnerTest : public testing::Test {
public:
    SyncRunnerTest() {
        makeFolders(folder_ / "data/Varnholt");
        lead_.emplace(leadLockOf(dependencies_.folders));
    }

    SyncPair pair(const std::string& name) {
        SyncPair pair{.id = Uuid::random(),
                      .name = name,
                      .source = folder_ / name,
                      .destination = folder_ / (name + "-copy")};
        pair.watch = true;
        pair.deleteExtraneous = true;
        fs::create_directories(pair.source);
        fs::create_directories(pair.destination);
        return pair;
    }
    SyncPair watched(const std::string& name) {
        const SyncPair pair = this->pair(name);
        runner_->put(pair);
        return pair;
    }
    bool waitFor(std::string_view what, const std::function<bool()>& holds) {
        // A short step of time at each look, for what is due soon.
        return dependencies_.loop.waitUntil(what, [&] {
            if (!holds())
                dependencies_.loop.advance(milliseconds(20));
            return holds();
        });
    }
    std::optional<WatchState> state(const SyncPair& pair) {
        const auto states = runner_->states();
        const auto found = states.find(pair.id);
        return found == states.end() ? std::nullopt : std::optional(found->second);
    }
    bool waitForState(const SyncPair& pair, const WatchState& wanted) {
        return waitFor(fmt::format("{} is {}", pair.name, static_cast<int>(wanted.kind)),
                       [&] { return state(pair) == wanted && !runner_->running(); });
    }
    bool waitForFile(const std::string& path) {
        return waitFor(path, [&] { return fs::exists(path) && !runner_->running(); });
    }
    void restart() {
        runner_.reset();
        runner_.emplace(dependencies_.dependencies, desktop_);
        runner_->start();
    }
    /// The source of the pair loses all but nothing of what its destination holds.
    SyncPair held() {
        const SyncPair pair = this->pair("held");
        for (int i = 0; i < 39; ++i)
            for (const std::string& side : {pair.source, pair.destination})
                if (i < 19 || side == pair.destination)
                    write(fmt::format("{}/{}", side, i));
        runner_->put(pair);
        return pair;
    }

    vh::test::TempDir folder_;
    TestDependencies dependencies_{folder_.path()};
    NotedDesktop desktop_;
    std::optional<FileLock> lead_;
    std::optional<SyncRunner> runner_{std::in_place, dependencies_.dependencies, desktop_};
};

TEST_F(SyncRunnerTest, syncsWhatChangesInAFolderThatIsNewItself) {
    const SyncPair one = watched("one");
    write(one.source + "/before", "text");
    runner_->start();
    EXPECT_TRUE(waitForFile(one.destination + "/before")) << "it catches up at its start";
    EXPECT_TRUE(waitForState(one, {}));
    EXPECT_EQ(runner_->needingAttention(), 0u);
    write(one.source + "/a/new/and/deep/one/file");
    EXPECT_TRUE(waitForFile(one.destination + "/a/new/and/deep/one/file"));
    EXPECT_TRUE(waitFor("its date is kept", [&] { return runner_->pairs().at(0).lastSync.has_value(); }));

    const SyncPair other = pair("other"); // another process adds it
    write(other.source + "/file");
    sync::SyncPairStore(sync::SyncPairStore::fileIn(dependencies_.folders)).change([&](auto& pairs) {
        pairs.push_back(other);
    });
    EXPECT_TRUE(waitForFile(other.destination + "/file"));
    runner_->remove(one.id);
    EXPECT_TRUE(waitFor("it is no longer watched", [&] { return !state(one); }));
    EXPECT_TRUE(fs::exists(one.destination + "/before"));
}

TEST_F(SyncRunnerTest, isNotLedOnByWhatItWritesDownItself) {
    dependencies_.defaults.set(DatabaseLocation::key, folder_ / "data/Varnholt"); // its usual place
    SyncPair home = pair("home");
    home.source = folder_ / "data";
    runner_->put(home);
    runner_->start();
    write(folder_ / "data/file");
    EXPECT_TRUE(waitForFile(home.destination + "/file"));
    EXPECT_TRUE(waitForFile(home.destination + "/Varnholt/FolderSync/pairs.json"));
    const size_t runs = dependencies_.summaries().size();
    int steps = 0;
    EXPECT_TRUE(waitFor("some time has passed", [&] { return ++steps > 1000 && !runner_->running(); }));
    EXPECT_LE(dependencies_.summaries().size(), runs + 1);
}

/// A folder that is a disk as long as it is mounted.
struct Disk {
    Disk(std::string content, std::string place) : content_(std::move(content)), place_(std::move(place)) {
        fs::create_directories(place_);
    }
    ~Disk() { unmount(); }
    void mount() {
        vh::test::LoopDisk::run({"mount", "--bind", content_, place_});
        isMounted_ = true;
    }
    void unmount() {
        if (std::exchange(isMounted_, false))
            vh::test::LoopDisk::run({"umount", place_});
    }

private:
    const std::string content_, place_;
    bool isMounted_ = false;
};

TEST_F(SyncRunnerTest, waitsForADiskAndGoesOnWhenItIsBack) {
    SyncPair whole = pair("whole"), inner = pair("inner");
    const std::string content = folder_ / "content";
    whole.source = folder_ / "disk";
    inner.source = folder_ / "disk/in";
    write(content + "/in/file");
    Disk disk(content, whole.source);
    disk.mount();
    for (const SyncPair& each : {whole, inner})
        runner_->put(each);
    runner_->start();
    EXPECT_TRUE(waitForFile(whole.destination + "/in/file") && waitForFile(inner.destination + "/file"));
    EXPECT_TRUE(waitForState(whole, {}));

    disk.unmount();
    const WatchState waiting{WatchState::Kind::waitingForSource, {}, 0};
    EXPECT_TRUE(waitForState(whole, waiting)) << "an empty mount point is no empty source";
    EXPECT_TRUE(waitForState(inner, waiting));
    EXPECT_EQ(runner_->needingAttention(), 2u);
    restart();
    EXPECT_TRUE(waitForState(whole, waiting)) << "also for the next that leads";
    EXPECT_TRUE(fs::exists(whole.destination + "/in/file"));

    write(content + "/in/late");
    disk.mount();
    EXPECT_TRUE(waitForFile(whole.destination + "/in/late") && waitForFile(inner.destination + "/late"));
    EXPECT_TRUE(waitForState(whole, {}) && waitForState(inner, {}));
}

TEST_F(SyncRunnerTest, holdsWhatWouldRemoveMuchUntilAPersonRanIt) {
    const SyncPair pair = held();
    runner_->start();
    EXPECT_TRUE(waitForState(pair, WatchState::held(20)));
    EXPECT_THAT(desktop_.said, ElementsAre(HasSubstr("held")));
    EXPECT_TRUE(fs::exists(pair.destination + "/38"));
    write(pair.source + "/more");
    dependencies_.loop.advance(minutes(6));
    restart();
    EXPECT_TRUE(waitForState(pair, WatchState::held(20)));
    dependencies_.loop.advance(minutes(6));
    EXPECT_EQ(desktop_.said.size(), 1u) << "it was said once, also after a restart";
    EXPECT_FALSE(fs::exists(pair.destination + "/more"));
    EXPECT_EQ(dependencies_.summaries().size(), 1u);

    const auto plan = sync::SyncEngine::plan(pair);
    std::optional<SyncJobResult> result;
    ASSERT_TRUE(runner_->apply(plan, pair, Trigger::manual, [&](const auto& ended) { result = ended; }));
    EXPECT_FALSE(runner_->apply(plan, pair, Trigger::manual)) << "one at a time";
    EXPECT_TRUE(waitFor("it ends", [&] { return result.has_value(); }));
    EXPECT_EQ(result->result.deleted, 20);
    EXPECT_TRUE(waitForState(pair, {}));
    EXPECT_TRUE(fs::exists(pair.destination + "/more"));
}

TEST_F(SyncRunnerTest, letsAHeldPairGoWhenAPersonLookedAtItInAnotherProcess) {
    const SyncPair pair = held();
    runner_->start();
    EXPECT_TRUE(waitForState(pair, WatchState::held(20)));
    SyncJobRequest request{.pair = pair, .plan = {}, .trigger = Trigger::scheduled, .details = {}};
    request.isAttended = false;
    fs::remove(pair.destination + "/38"); // so few that the guard lets them go
    EXPECT_EQ(runSync(request, dependencies_.dependencies, {}).result.deleted, 19);
    dependencies_.loop.advance(minutes(6));
    EXPECT_TRUE(waitForState(pair, WatchState::held(20))) << "no schedule is a person";
    request.isAttended = true;
    request.plan.emplace().unreadable = {Message::literal("file: it cannot be read")};
    EXPECT_EQ(runSync(request, dependencies_.dependencies, {}).result.errors.size(), 1u);
    EXPECT_TRUE(waitForState(pair, {})) << "also when not all of it could be done";
}

TEST_F(SyncRunnerTest, runsOneAfterTheOtherAndWaitsForOtherProcesses) {
    const SyncPair one = watched("one"), two = watched("two"), three = watched("three");
    for (const SyncPair& each : {one, two, three})
        write(each.source + "/file");
    std::optional<FileLock> other(FileLock(folder_ / "data/Varnholt/FolderSync/sync.lock"));
    runner_->start();
    EXPECT_TRUE(waitForState(three, {}));
    dependencies_.loop.advance(seconds(30));
    EXPECT_FALSE(fs::exists(one.destination + "/file"));
    std::optional<SyncJobResult> refused;
    EXPECT_TRUE(waitFor("it may be asked", [&] {
        return refused || runner_->apply(sync::SyncEngine::plan(one), one, Trigger::manual,
                                         [&](const auto& ended) { refused = ended; });
    }));
    EXPECT_TRUE(waitFor("it is refused", [&] { return refused.has_value(); }));
    EXPECT_EQ(refused->message, "Another sync is running. Only one runs at a time.");

    auto scheduled = std::async(std::launch::async,
                                [&] { return runner_->runScheduled(three, Trigger::scheduled, {}, {}); });
    other.reset();
    for (const SyncPair& each : {one, two, three})
        EXPECT_TRUE(waitForFile(each.destination + "/file")) << each.name;
    EXPECT_TRUE(waitFor("the schedule ends",
                        [&] { return scheduled.wait_for(seconds(0)) == std::future_status::ready; }));
    EXPECT_EQ(scheduled.get().trigger, Trigger::scheduled);
    EXPECT_TRUE(waitFor("all is quiet", [&] { return !runner_->running(); }));
    EXPECT_EQ(runner_->results().size(), 3u);
}

TEST_F(SyncRunnerTest, saysWhyItFailsAndGoesOnWhenItCan) {
    SyncPair pair = this->pair("nested");
    pair.destination = pair.source + "/inner";
    fs::create_directories(pair.destination);
    runner_->put(pair);
    runner_->start();
    EXPECT_TRUE(waitFor("it fails", [&] { return state(pair) && !state(pair)->isHealthy(); }));
    EXPECT_THAT(state(pair)->text, HasSubstr("Source and destination must not contain each other."));
    pair.destination = folder_ / "nested-copy";
    write(pair.source + "/file");
    runner_->put(pair);
    EXPECT_TRUE(waitForFile(pair.destination + "/file"));
    EXPECT_TRUE(waitForState(pair, {}));
    fs::remove_all(pair.destination);
    write(pair.source + "/file", "anew");
    EXPECT_TRUE(waitForState(pair, {WatchState::Kind::waitingForDestination, {}, 0}));
    fs::create_directories(pair.destination);
    dependencies_.loop.setDate(dependencies_.loop.clock()() + std::chrono::hours(8)); // as after a sleep
    EXPECT_TRUE(waitFor("it woke", [&] {
        dependencies_.loop.advance(seconds(1));
        return fs::exists(pair.destination + "/file");
    }));
}

TEST_F(SyncRunnerTest, triesAgainWhenThereIsRoomOrAFolderAgain) {
    const SyncPair pair = this->pair("full");
    const auto mounted = [&](bool isMounted) {
        vh::test::LoopDisk::run(isMounted ? std::vector<std::string>{"mount", "-t", "tmpfs", "-o",
                                                                     "size=256k", "none", pair.destination}
                                          : std::vector<std::string>{"umount", pair.destination});
    };
    mounted(true);
    const std::shared_ptr<void> unmounting(nullptr, [&](void*) { mounted(false); });
    write(pair.destination + "/.Trash-0/other", std::string(200 << 10, 'x'));
    write(pair.source + "/file", std::string(100 << 10, 'x'));
    runner_->put(pair);
    runner_->start();
    const auto hasFailed = [&] {
        return state(pair) && state(pair)->kind == WatchState::Kind::failed && !runner_->running();
    };
    EXPECT_TRUE(waitFor("there is no room", hasFailed));
    EXPECT_FALSE(fs::exists(pair.destination + "/file"));
    const size_t tried = dependencies_.summaries().size();
    dependencies_.loop.advance(seconds(14));
    EXPECT_TRUE(waitFor("it is tried again", [&] { return dependencies_.summaries().size() > tried; }));
    EXPECT_TRUE(waitFor("in vain", hasFailed)) << state(pair)->text;
    fs::remove(pair.destination + "/.Trash-0/other");
    dependencies_.loop.advance(seconds(31));
    EXPECT_TRUE(waitForFile(pair.destination + "/file"));
    EXPECT_TRUE(waitForState(pair, {}));

    fs::remove_all(pair.source);
    EXPECT_TRUE(waitForState(pair, {WatchState::Kind::waitingForSource, {}, 0}));
    dependencies_.loop.advance(minutes(6));
    EXPECT_TRUE(waitForState(pair, {WatchState::Kind::waitingForSource, {}, 0}));
    write(pair.source + "/late");
    dependencies_.loop.advance(minutes(6));
    EXPECT_TRUE(waitForFile(pair.destination + "/late"));
    EXPECT_TRUE(waitForState(pair, {}));
}

TEST_F(SyncRunnerTest, comparesFromTimeToTimeWhatCannotBeWatched) {
    const auto outcome = vh::test::runInChild([&] {
        vh::test::setUserLimit("max_inotify_watches", 12);
        const SyncPair pair = watched("pair");
        for (int i = 0; i < 20; ++i)
            write(fmt::format("{}/{}/file", pair.source, i));
        runner_->start();
        waitForFile(pair.destination + "/19/file");
        waitFor("it failed", [&] { return state(pair) && !state(pair)->isHealthy(); });
        write(pair.source + "/late");
        dependencies_.loop.advance(minutes(6));
        waitForFile(pair.destination + "/late");
        throw std::runtime_error(state(pair)->text);
    });
    EXPECT_THAT(outcome.message,
                testing::StartsWith("The source has 21 folders, and this computer watches no "
                                    "more than 12 in all."));
    EXPECT_THAT(outcome.message, HasSubstr("fs.inotify.max_user_watches=32"));
}

TEST_F(SyncRunnerTest, tellsOtherProcessesHowItIs) {
    const SyncPair pair = watched("pair");
    SyncRunner other(dependencies_.dependencies, desktop_);
    EXPECT_THAT(other.states(), IsEmpty());
    fs::remove(pair.destination);
    runner_->start();
    const WatchState waiting{WatchState::Kind::waitingForDestination, {}, 0};
    EXPECT_TRUE(waitForState(pair, waiting));
    EXPECT_TRUE(other.isWatched());
    EXPECT_THAT(other.states(), ElementsAre(testing::Pair(pair.id, waiting)));
    EXPECT_EQ(other.needingAttention(), 1u);
    lead_.reset(); // as when it is killed
    EXPECT_FALSE(other.isWatched());
    EXPECT_THAT(other.states(), IsEmpty());
}

} // namespace
} // namespace vh::automation::test
