#include "Features/Schedules/work/Scheduler.h"

#include "Automation/ScheduledActions.h"
#include "Core/Codec.h"
#include "Features/Schedules/work/TaskTurn.h"
#include "Platform/Files.h"
#include "support/ChildWork.h"
#include "support/TestDependencies.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <csignal>

namespace vh::automation::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* cleaned = "There was nothing to clean.";

/// One process's scheduler.
struct Desk : TestDependencies {
    explicit Desk(const std::string& root)
        : TestDependencies(root), store(root + "/data/schedules.json", LocalCalendar("UTC")),
          actions(dependencies), scheduler(dependencies, store, actions) {}

    ScheduledTask add(std::string title, const Schedule& schedule = HourlySchedule{1},
                      bool runIfMissed = false) {
        const ScheduledTask task = makeTask(std::move(title), "system-junk", "system-junk", {}, schedule,
                                            runIfMissed, dependencies.clock(), dependencies.calendar);
        store.upsert(task);
        return *store.task(task.id);
    }
    void waitForEnd() {
        loop.waitUntil("the task ends", [&] { return !scheduler.runningTaskID() && scheduler.lastRecord(); });
    }
    void waitForGate() {
        loop.waitUntil("the task runs", [&] { return junk->scanGate.isWaitedAt(); });
    }

    ScheduleStore store;
    ScheduledActions actions;
    Scheduler scheduler;
};

class SchedulerTest : public testing::Test {
protected:
    vh::test::TempDir dir;
    Desk desk{dir.path()};
    Scheduler& scheduler = desk.scheduler;
    const Date start = vh::test::TurnedLoop::defaultStart;
};

TEST_F(SchedulerTest, RunsWhatIsDueInFileOrderOneAtATime) {
    const ScheduledTask first = desk.add("first");
    const ScheduledTask second = desk.add("second");
    scheduler.start();
    scheduler.start();
    desk.loop.advance(59min);
    EXPECT_FALSE(scheduler.runningTaskID());
    desk.junk->scanGate.close();
    desk.loop.advance(61s);
    EXPECT_EQ(scheduler.runningTaskID(), first.id);
    desk.waitForGate();
    desk.loop.advance(30min); // the second is late by now, but it has been waiting for its turn
    EXPECT_EQ(desk.junk->scans, 1);
    desk.junk->scanGate.open();
    desk.loop.waitUntil("both ran", [&] { return desk.junk->scans == 2 && !scheduler.runningTaskID(); });
    EXPECT_EQ(scheduler.lastMessage(), fmt::format("second: {}", cleaned));
    for (const ScheduledTask& task : scheduler.tasks()) {
        EXPECT_EQ(task.lastOutcome, Outcome::success) << task.title;
        EXPECT_EQ(task.nextRun, desk.dependencies.clock() + 1h) << task.title;
    }
    EXPECT_EQ(desk.log.all().size(), 2u);
    EXPECT_EQ(desk.log.all().front().trigger, Trigger::scheduled);
}

TEST_F(SchedulerTest, SkipsWhatWasMissedAtTheStartAndCatchesUpWhatWantsTo) {
    desk.add("skipped");
    const ScheduledTask caught = desk.add("caught up", HourlySchedule{1}, true);
    desk.loop.setDate(start + 1h + 16min);
    scheduler.start();
    EXPECT_EQ(scheduler.lastMessage(), "1 task whose time had passed was put off to the next one.");
    desk.waitForEnd();
    EXPECT_EQ(desk.junk->scans, 1);
    EXPECT_TRUE(desk.store.task(caught.id)->lastRun);
    EXPECT_EQ(scheduler.tasks().front().lastRun, std::nullopt);
    EXPECT_EQ(scheduler.tasks().front().nextRun, start + 2h + 16min);
}

TEST_F(SchedulerTest, RunsATaskWithinTheGraceAtTheStart) {
    desk.add("late");
    desk.loop.setDate(start + 1h + 14min);
    scheduler.start();
    desk.waitForEnd();
    EXPECT_EQ(desk.junk->scans, 1);
}

TEST_F(SchedulerTest, AsleepOverTheTimeOrWithTheClockTurnedItGoesByTheDate) {
    const ScheduledTask task = desk.add("daily", DailySchedule{13, 0});
    scheduler.start();
    desk.loop.setDate(start + 26h); // woken an hour late, the day after
    desk.loop.advance(30s);
    EXPECT_EQ(desk.junk->scans, 0);
    EXPECT_EQ(desk.store.task(task.id)->nextRun, start + 49h);
    desk.loop.setDate(start - 24h * 300); // the clock was far ahead
    desk.loop.advance(30s);
    EXPECT_EQ(desk.store.task(task.id)->nextRun, start - 24h * 300 + 1h);
}

TEST_F(SchedulerTest, ARunByHandLeavesTheNextRunAlone) {
    const ScheduledTask task = desk.add("by hand");
    EXPECT_FALSE(scheduler.runNow(Uuid::random()));
    desk.junk->scanGate.close();
    EXPECT_TRUE(scheduler.runNow(task.id));
    desk.waitForGate();
    EXPECT_FALSE(scheduler.runNow(task.id));
    desk.loop.waitUntil("it says what it does", [&] { return scheduler.progressText() != ""; });
    scheduler.stopRunning();
    desk.waitForEnd();
    const ScheduledTask ran = *desk.store.task(task.id);
    EXPECT_EQ(ran.lastOutcome, Outcome::cancelled);
    EXPECT_EQ(ran.nextRun, task.nextRun);
}

TEST_F(SchedulerTest, ATaskRemovedWhileItRunsIsGone) {
    const ScheduledTask task = desk.add("removed");
    desk.junk->scanGate.close();
    EXPECT_TRUE(scheduler.runNow(task.id));
    desk.waitForGate();
    scheduler.remove(task.id, true);
    desk.junk->scanGate.open();
    desk.waitForEnd();
    EXPECT_TRUE(desk.store.tasks().empty());
    EXPECT_EQ(desk.log.all().size(), 1u);
}

TEST_F(SchedulerTest, TellsOfAnAdministratorsTaskThatAPersonRemoves) {
    std::vector<std::string> told;
    scheduler.setOnRemovedByPerson([&](const ScheduledTask& task) { told.push_back(task.title); });
    ScheduledTask company = desk.add("company's");
    company.company = "Ana";
    desk.store.upsert(company);
    scheduler.remove(desk.add("own").id, true);
    scheduler.remove(company.id, true);
    EXPECT_EQ(told, std::vector<std::string>{"company's"});
}

TEST_F(SchedulerTest, SwitchedOffItWaitsAndSwitchedOnItStartsAnew) {
    const ScheduledTask task = desk.add("switched");
    scheduler.start();
    scheduler.setEnabled(task.id, false);
    EXPECT_EQ(desk.store.task(task.id)->nextRun, task.nextRun);
    desk.loop.advance(2h);
    EXPECT_EQ(desk.junk->scans, 0);
    scheduler.setEnabled(task.id, true);
    EXPECT_EQ(desk.store.task(task.id)->nextRun, start + 3h);
}

TEST_F(SchedulerTest, OneTaskAtATimeAmongAllProcesses) {
    const ScheduledTask task = desk.add("shared");
    Desk other(dir.path());
    desk.junk->scanGate.close();
    EXPECT_TRUE(scheduler.runNow(task.id));
    desk.waitForGate();
    EXPECT_FALSE(other.scheduler.runNow(task.id));
    // Due meanwhile, it waits for its turn and is not skipped.
    other.scheduler.start();
    other.loop.advance(2h);
    EXPECT_EQ(other.junk->scans, 0);
    desk.junk->scanGate.open();
    desk.waitForEnd();
    other.loop.advance(30s);
    other.waitForEnd();
    EXPECT_EQ(other.junk->scans, 1);
}

TEST_F(SchedulerTest, WhatAnotherProcessRanMeanwhileIsNotRunAgain) {
    desk.add("shared");
    Desk other(dir.path());
    desk.junk->scanGate.close();
    scheduler.start();
    other.scheduler.start();
    desk.loop.advance(61min);
    desk.waitForGate();
    other.loop.advance(61min); // due here too, and waiting for its turn
    desk.junk->scanGate.open();
    desk.waitForEnd();
    other.loop.advance(1min);
    EXPECT_EQ(other.junk->scans, 0);
    EXPECT_FALSE(other.scheduler.runningTaskID());
}

TEST_F(SchedulerTest, NoticesWhatOtherProcessesDo) {
    int told = 0;
    const auto token = scheduler.observe([&] { ++told; });
    Desk other(dir.path());
    other.add("from elsewhere");
    desk.loop.waitUntil("the folder says so", [&] {
        desk.loop.advance(100ms);
        return told > 0;
    });
    ASSERT_EQ(scheduler.tasks().size(), 1u);
    EXPECT_EQ(scheduler.tasks().front().title, "from elsewhere");
}

/// Dies in the middle of its work.
struct DeadlyModule : FakeModule {
    ScanReport scan(const JobControl&) override {
        std::raise(SIGKILL);
        return {};
    }
};

TEST(SchedulerKill, AKilledTaskHasFailedAndDoesNotRunAgain) {
    for (const bool byHand : {false, true}) {
        const vh::test::TempDir dir;
        const auto died = vh::test::runInChild([&] {
            Desk desk(dir.path());
            desk.junk = std::make_shared<DeadlyModule>();
            const ScheduledTask task = desk.add("Fatal", HourlySchedule{1}, true);
            desk.scheduler.start();
            if (byHand)
                desk.scheduler.runNow(task.id);
            desk.loop.advance(2h);
            desk.waitForEnd();
        });
        ASSERT_EQ(died.status, 128 + SIGKILL);
        Desk next(dir.path());
        next.loop.setDate(vh::test::TurnedLoop::defaultStart + 30min + (byHand ? 0min : 31min));
        next.scheduler.start();
        next.loop.advance(10min);
        EXPECT_EQ(next.junk->scans, 0);
        EXPECT_EQ(next.summaries(), std::vector<std::string>{"Fatal was interrupted before its end."});
        const ScheduledTask task = next.store.tasks().front();
        EXPECT_EQ(task.lastOutcome, Outcome::failed);
        EXPECT_GT(task.nextRun, next.dependencies.clock());
        EXPECT_FALSE(statusOf(dir / "data/schedules.running.json"));
    }
}

TEST_F(SchedulerTest, AKillBetweenTheRecordAndItsMarkTakesTheRecordsOutcome) {
    const ScheduledTask task = desk.add("nearly done");
    desk.loop.setDate(start + 1h);
    writeFileAtomically(dir / "data/schedules.running.json",
                        encodeJson(TaskClaim{task.id, task.title, task.toolID, Trigger::scheduled,
                                             task.nextRun, desk.dependencies.clock()}));
    desk.log.begin(task.toolID, Trigger::scheduled)->finish(Outcome::warning, "Done.");
    scheduler.start();
    desk.loop.advance(1min);
    EXPECT_EQ(desk.summaries(), std::vector<std::string>{"Done."});
    EXPECT_EQ(desk.store.task(task.id)->lastOutcome, Outcome::warning);
    EXPECT_EQ(desk.store.task(task.id)->nextRun, start + 2h);
}

TEST_F(SchedulerTest, ALeftClaimMovesNoRunThatIsStillToCome) {
    const ScheduledTask task = desk.add("moved meanwhile", DailySchedule{18, 0});
    desk.loop.setDate(start + 1h);
    writeFileAtomically(dir / "data/schedules.running.json",
                        encodeJson(TaskClaim{task.id, task.title, task.toolID, Trigger::scheduled, start + 1h,
                                             desk.dependencies.clock()}));
    const Date later = *task.nextRun - 1h;
    desk.store.change(task.id, [&](ScheduledTask& kept) { kept.nextRun = later; });
    scheduler.start();
    EXPECT_EQ(desk.store.task(task.id)->lastOutcome, Outcome::failed);
    EXPECT_EQ(desk.store.task(task.id)->nextRun, later);
}

TEST_F(SchedulerTest, WhatIsSwitchedOffWhileItWaitsDoesNotRun) {
    const ScheduledTask running = desk.add("running"), waiting = desk.add("waiting");
    desk.junk->scanGate.close();
    scheduler.start();
    desk.loop.advance(61min);
    desk.waitForGate();
    desk.store.change(waiting.id, [](ScheduledTask& task) { task.isEnabled = false; });
    desk.junk->scanGate.open();
    desk.waitForEnd();
    desk.loop.advance(1min);
    EXPECT_EQ(desk.junk->scans, 1);
}

/// Dies in the middle of removing.
struct DeadlyCleaner : FakeModule {
    CleanResult clean(const CleanSelection&, const JobControl&) override {
        std::raise(SIGKILL);
        return {};
    }
};

TEST(SchedulerKill, AKilledCleanHasOneRecord) {
    const vh::test::TempDir dir;
    const auto died = vh::test::runInChild([&] {
        Desk desk(dir.path());
        desk.junk = std::make_shared<DeadlyCleaner>();
        desk.junk->add(dir / "cache", 10);
        desk.add("Fatal");
        desk.scheduler.start();
        desk.loop.advance(2h);
        desk.waitForEnd();
    });
    ASSERT_EQ(died.status, 128 + SIGKILL);
    Desk next(dir.path());
    next.loop.setDate(vh::test::TurnedLoop::defaultStart + 61min);
    next.scheduler.start();
    next.journals.recoverInterrupted([](const std::string&) { return RunWords("again"); });
    ASSERT_EQ(next.log.all().size(), 1u);
    EXPECT_EQ(next.log.all().front().outcome, Outcome::failed);
    EXPECT_EQ(next.store.tasks().front().lastOutcome, Outcome::failed);
}

TEST(SchedulerEnd, LeavingWhileATaskRunsStopsItAndMarksIt) {
    const vh::test::TempDir dir;
    Uuid id;
    {
        Desk desk(dir.path());
        id = desk.add("left", HourlySchedule{1}).id;
        desk.junk->scanGate.close();
        desk.scheduler.start();
        desk.loop.advance(1h);
        desk.waitForGate();
    }
    Desk next(dir.path());
    EXPECT_EQ(next.store.task(id)->lastOutcome, Outcome::cancelled);
    EXPECT_GT(next.store.task(id)->nextRun, next.store.task(id)->lastRun);
    EXPECT_EQ(next.summaries(), std::vector<std::string>{"Stopped before its end."});
}

} // namespace
} // namespace vh::automation::test
