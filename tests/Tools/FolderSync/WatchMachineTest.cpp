#include "Tools/FolderSync/work/WatchMachine.h"

#include <gtest/gtest.h>

namespace vh::automation::test {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;
using sync::WatchState;
using End = SyncJobResult::End;
using Todo = WatchMachine::Todo;
using Watcher = WatchMachine::Watcher;

const WatchState away{WatchState::Kind::waitingForDestination, {}, 0};

SyncJobResult result(End end, std::string message = {}) {
    SyncJobResult result;
    result.end = end;
    result.message = std::move(message);
    if (end == End::blocked)
        result.state = away;
    if (end == End::held)
        result.state = WatchState::held(20);
    return result;
}

SyncJobResult withErrors() {
    SyncJobResult some = result(End::done, "one error");
    some.result.faults = {Message::literal("file: it cannot be read")};
    return some;
}

SyncJobResult stopped() {
    SyncJobResult some = result(End::done);
    some.result.stopped = true;
    return some;
}

/// Its source is watched and its first sync has begun.
class WatchMachineTest : public testing::Test {
protected:
    WatchMachineTest() {
        EXPECT_EQ(machine.look(true), Todo{.look = true});
        EXPECT_EQ(machine.looked({}), Todo{.watcher = Watcher::start});
        EXPECT_EQ(machine.watcherStarted(), Todo{.sync = true});
        machine.began();
    }
    void settle() {
        EXPECT_EQ(machine.ended(result(End::done), true), Todo{});
        EXPECT_EQ(machine.state(), WatchState());
    }
    /// Whether it syncs when its folders are looked at and are all right.
    bool syncsAtALook(bool catchUp = false) {
        EXPECT_TRUE(machine.look(catchUp).look);
        return machine.looked({}).sync;
    }

    WatchMachine machine;
};

TEST_F(WatchMachineTest, syncsOnceForWhatChangesWhileItSyncs) {
    EXPECT_EQ(machine.changed(), Todo{});
    EXPECT_EQ(machine.changed(), Todo{});
    EXPECT_TRUE(machine.ended(result(End::done), true).sync);
    machine.began();
    settle();
    EXPECT_FALSE(syncsAtALook());
    EXPECT_TRUE(syncsAtALook(true)) << "as after a sleep";
}

TEST_F(WatchMachineTest, triesWhatFailedAgainWithGrowingPauses) {
    for (const SyncJobResult& failure : {result(End::failed, "why"), withErrors()}) {
        EXPECT_EQ(machine.ended(failure, true), Todo{.retry = seconds(15)});
        EXPECT_EQ(machine.state(), WatchState::failed(failure.message));
        EXPECT_FALSE(syncsAtALook()) << "the regular look does not hurry it";
        EXPECT_EQ(machine.retryComes(), Todo{.sync = true});
        EXPECT_EQ(machine.state(), WatchState::failed(failure.message)) << "until it went well";
        machine.began();
        EXPECT_EQ(machine.ended(failure, true), Todo{.retry = seconds(30)});
        EXPECT_TRUE(machine.changed().sync) << "a change makes it come sooner";
        EXPECT_EQ(machine.retryComes(), Todo{}) << "it is no longer waited for";
        machine.began();
        EXPECT_EQ(machine.ended(failure, true), Todo{.retry = seconds(60)})
            << "but no pause is shorter for it";
        EXPECT_TRUE(syncsAtALook(true)) << "so does a disk that comes";
        machine.began();
        machine.changed();
        EXPECT_EQ(machine.ended(failure, true), Todo{.retry = seconds(15)}) << "nor what came meanwhile";
        machine.retryComes();
        machine.began();
        settle();
        machine.changed();
        machine.began();
    }
    EXPECT_EQ(machine.ended(result(End::failed, "why"), true).retry, seconds(15)) << "counted anew";
    EXPECT_EQ(WatchMachine::pauseAfter(7), minutes(16));
    EXPECT_EQ(WatchMachine::pauseAfter(8), minutes(30));
    EXPECT_EQ(WatchMachine::pauseAfter(1'000'000), minutes(30));
}

TEST_F(WatchMachineTest, comesBackToWhatWasStoppedOrMetAnother) {
    EXPECT_EQ(machine.ended(result(End::busy), true), Todo{.retry = seconds(5)});
    EXPECT_TRUE(machine.retryComes().sync);
    machine.began();
    EXPECT_EQ(machine.ended(stopped(), true), Todo{.retry = minutes(5)}) << "who stopped it wants some rest";
    EXPECT_EQ(machine.state(), WatchState());
    EXPECT_TRUE(machine.retryComes().sync);
}

TEST_F(WatchMachineTest, waitsForAFolderAndSyncsWhenItIsBack) {
    settle();
    machine.look(false);
    EXPECT_EQ(machine.looked(away), Todo{.watcher = Watcher::drop});
    EXPECT_EQ(machine.state(), away);
    machine.look(false);
    EXPECT_EQ(machine.looked({}), Todo{.watcher = Watcher::start});
    EXPECT_EQ(machine.watcherStarted(), Todo{.sync = true}) << "nobody saw what changed meanwhile";

    machine.began();
    EXPECT_EQ(machine.ended(result(End::blocked), true), Todo{.watcher = Watcher::drop});
    EXPECT_EQ(machine.state(), away);
    machine.look(false);
    EXPECT_EQ(machine.looked(away), Todo{.watcher = Watcher::drop});
    machine.look(false);
    EXPECT_EQ(machine.looked({}), Todo{.watcher = Watcher::start});
    EXPECT_TRUE(machine.watcherStarted().sync) << "what the blocked sync had begun for is still to do";

    machine.began();
    machine.look(false);
    machine.looked(away);
    EXPECT_FALSE(machine.ended(withErrors(), true).sync);
    machine.look(false);
    machine.looked({});
    machine.watcherStarted();
    EXPECT_EQ(machine.state(), WatchState::failed("one error"));
}

TEST_F(WatchMachineTest, looksAgainWhenAskedDuringALook) {
    settle();
    EXPECT_TRUE(machine.look(false).look);
    EXPECT_FALSE(machine.look(true).look) << "one at a time";
    EXPECT_EQ(machine.looked(away), Todo{.look = true}) << "that was before whatever it is asked for";
    EXPECT_EQ(machine.state(), WatchState());
    EXPECT_TRUE(machine.looked({}).sync);
    EXPECT_EQ(machine.rootChanged(), (Todo{.watcher = Watcher::drop, .look = true}));
    EXPECT_TRUE(machine.isKnown());
    EXPECT_EQ(machine.looked({}), Todo{.watcher = Watcher::start});
}

TEST_F(WatchMachineTest, comparesWithTimeWhatCannotBeWatched) {
    settle();
    EXPECT_EQ(machine.watcherFailed("limit"), (Todo{.watcher = Watcher::drop, .sync = true}));
    EXPECT_EQ(machine.state(), WatchState::failed("limit"));
    machine.began();
    EXPECT_EQ(machine.ended(result(End::upToDate), true), Todo{});
    const auto tryToWatch = [&] {
        const WatchState before = machine.state();
        EXPECT_EQ(machine.looked({}), Todo{.watcher = Watcher::start});
        EXPECT_FALSE(machine.state().isHealthy());
        EXPECT_EQ(machine.state(), before) << "until it is known";
        return machine.watcherFailed("limit").sync;
    };
    machine.look(false);
    EXPECT_FALSE(tryToWatch());
    machine.timePasses();
    EXPECT_TRUE(tryToWatch());
    machine.began();
    EXPECT_EQ(machine.ended(withErrors(), true).retry, seconds(15));
    machine.timePasses();
    EXPECT_FALSE(tryToWatch()) << "its pause goes on";
}

TEST_F(WatchMachineTest, staysHeldUntilAPersonLooksAtIt) {
    machine.ended(result(End::held), true);
    EXPECT_EQ(machine.state(), WatchState::held(20));
    EXPECT_EQ(machine.changed(), Todo{});
    EXPECT_EQ(machine.retryComes(), Todo{});
    EXPECT_FALSE(syncsAtALook(true));
    machine.ended(result(End::done), false);
    EXPECT_TRUE(machine.isHeld()) << "a schedule is no person";
    EXPECT_EQ(machine.approved(), Todo{.look = true});
    EXPECT_TRUE(machine.looked({}).sync);
    EXPECT_EQ(machine.approved(), Todo{});

    WatchMachine next(20); // of who leads afterwards
    EXPECT_TRUE(next.isHeld());
    next.look(true);
    next.looked({});
    EXPECT_FALSE(next.watcherStarted().sync);
    EXPECT_TRUE(next.ended(result(End::upToDate), false).sync);
    EXPECT_FALSE(next.isHeld()) << "there is nothing to remove any more";
}

TEST_F(WatchMachineTest, takesWhatOthersSyncForItsOwn) {
    EXPECT_EQ(machine.ended(withErrors(), false), Todo{}) << "its own goes on";
    EXPECT_EQ(machine.ended(result(End::busy), true).retry, seconds(5));
    EXPECT_TRUE(machine.ended(result(End::done), false).sync) << "and is not waited for any longer";
    machine.began();
    settle();
    EXPECT_EQ(machine.ended(stopped(), false), Todo{}) << "a person's own";
    EXPECT_EQ(machine.ended(result(End::busy), false), Todo{});
    EXPECT_EQ(machine.ended(withErrors(), false).retry, seconds(15));
    EXPECT_EQ(machine.state(), WatchState::failed("one error"));
}

} // namespace
} // namespace vh::automation::test
