#include "Features/Optimize/work/OptimizeRunner.h"

#include "Automation/ScheduledActions.h"
#include "support/ChildWork.h"
#include "support/TestDependencies.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace vh::automation::test {
namespace {

using StepState = OptimizeRunner::StepState;
using std::chrono::milliseconds;

OptimizeProfile profileOf(bool cleans, std::vector<std::string> tasks = {}) {
    OptimizeProfile profile;
    profile.cleanStorage = cleans;
    profile.maintenanceTasks = std::move(tasks);
    return profile;
}

class OptimizeRunnerTest : public testing::Test {
protected:
    OptimizeRunner& runner(OptimizeRunner::Limits limits = {}) {
        return runner_.emplace(dependencies.dependencies, actions, limits);
    }
    std::vector<StepState> states() {
        std::vector<StepState> all;
        for (const auto& step : runner_->snapshot().steps)
            all.push_back(step.state);
        return all;
    }
    std::vector<RunFileRow> rowsOfLast() { return dependencies.files.rows(dependencies.log.all().back().id); }

    vh::test::TempDir dir;
    TestDependencies dependencies{dir.path()};
    ScheduledActions actions{dependencies.dependencies};
    std::optional<OptimizeRunner> runner_;
};

TEST_F(OptimizeRunnerTest, AllStepsAreOneRecordWithTheListOfAll) {
    dependencies.junk->add("/cache/a", 5'000'000);
    dependencies.junk->add("/cache/b", 1, "Caches", "in use");
    int told = 0;
    const auto observing = runner().observe([&] { ++told; });
    const RunRecord record = runner_->run(profileOf(true, {"clear-font-caches", "purge-memory"}),
                                          Trigger::manual, {}, {{RunDetail::flow, "F"}});
    EXPECT_EQ(
        record.summary,
        "Moved 5 MB to the Trash. 2 steps done. 1 item had to stay. 1 task needs the privileged helper.");
    EXPECT_EQ(record.outcome, Outcome::warning);
    EXPECT_EQ(record.detail(RunDetail::flow), "F");
    EXPECT_EQ(record.metric(RunMetric::freedBytes), 5'000'000);
    ASSERT_EQ(dependencies.log.all().size(), 1u) << "the steps write none";
    EXPECT_EQ(dependencies.log.all()[0].toolID, "optimize");
    ASSERT_EQ(rowsOfLast().size(), 2u);
    EXPECT_EQ(rowsOfLast()[0].path, "/cache/a");
    EXPECT_EQ(states(), (std::vector{StepState::warning, StepState::done}));
    EXPECT_EQ(runner_->snapshot().steps[1].skipped, 1);
    EXPECT_NE(record.detail(RunDetail::output).value_or("").find("clear-font-caches"), std::string::npos);
    dependencies.loop.pump();
    EXPECT_EQ(told, 1) << "changes are told together";
}

TEST_F(OptimizeRunnerTest, HowItEnds) {
    struct Row {
        const char* what;
        OptimizeProfile profile;
        Outcome outcome;
        std::vector<StepState> states;
        const char* summary;
    };
    OptimizeProfile privacy;
    privacy.cleanStorage = true;
    privacy.cleanPrivacy = privacy.smartHealth = true;
    const Row rows[] = {
        {"only a root task",
         profileOf(false, {"purge-memory"}),
         Outcome::warning,
         {StepState::skipped},
         "Nothing was moved to the Trash. No step done. 1 task needs the privileged helper."},
        {"nothing chosen",
         profileOf(false, {"bogus", "restart-mac"}),
         Outcome::success,
         {},
         "No step is chosen."},
        {"nothing to do",
         profileOf(true),
         Outcome::success,
         {StepState::done},
         "Nothing was moved to the Trash. 1 step done."},
        {"tools that are not there",
         privacy,
         Outcome::warning,
         {StepState::done, StepState::failed, StepState::failed},
         "Nothing was moved to the Trash. 1 step done. 2 steps failed."},
    };
    runner();
    for (const Row& row : rows) {
        const RunRecord record = runner_->run(row.profile, Trigger::manual);
        EXPECT_EQ(record.outcome, row.outcome) << row.what;
        EXPECT_EQ(record.summary, row.summary);
        EXPECT_EQ(states(), row.states) << row.what;
        EXPECT_EQ(runner_->snapshot().lastRecord->id, record.id);
    }
    dependencies.junk->scanError = "no disk";
    EXPECT_EQ(runner_->run(profileOf(true), Trigger::manual).outcome, Outcome::failed) << "every step failed";
    EXPECT_EQ(runner().snapshot().lastRecord->outcome, Outcome::failed) << "known to the next process";
}

TEST_F(OptimizeRunnerTest, OneAtATimeAndACancelLeavesTheRest) {
    dependencies.junk->scanGate.close();
    runner();
    OptimizeRunner other(dependencies.dependencies, actions); // stands for another process
    RunRecord record;
    std::thread running(
        [&] { record = runner_->run(profileOf(true, {"clear-font-caches"}), Trigger::manual); });
    vh::test::waitUntil("the scan", [&] { return dependencies.junk->scanGate.isWaitedAt(); });
    for (OptimizeRunner* second : {&*runner_, &other}) {
        const RunRecord busy = second->run(profileOf(false), Trigger::scheduled);
        EXPECT_EQ(busy.outcome, Outcome::failed);
        EXPECT_EQ(busy.summary, "Optimize is running already.");
    }
    EXPECT_EQ(runner_->snapshot().detail, "Clean caches: /home/looking/here");
    runner_->requestCancel();
    running.join();
    EXPECT_EQ(record.outcome, Outcome::cancelled);
    EXPECT_EQ(states(), (std::vector{StepState::skipped, StepState::skipped}));
    EXPECT_EQ(dependencies.log.all().size(), 1u);
    dependencies.junk->scanGate.open();
    EXPECT_EQ(other.run(profileOf(true), Trigger::manual).outcome, Outcome::success)
        << "the turn is free again";
}

TEST_F(OptimizeRunnerTest, WhatTakesTooLongIsStoppedAndTheNextStepGoesAhead) {
    dependencies.junk->scanGate.close();
    runner({.maintenance = milliseconds(10'000), .otherStep = milliseconds(20), .check = milliseconds(20)});
    const RunRecord record = runner_->run(profileOf(true, {"clear-font-caches"}), Trigger::manual);
    EXPECT_EQ(states(), (std::vector{StepState::failed, StepState::done}));
    EXPECT_EQ(runner_->snapshot().steps[0].text, "Took too long and was asked to stop.");
    EXPECT_EQ(record.outcome, Outcome::warning);
    const auto checks = runner_->check(profileOf(true));
    ASSERT_EQ(checks.size(), 1u);
    EXPECT_EQ(checks[0].detail, "Could not be checked: Took too long and was asked to stop.");
}

/// Stands at the gate whatever it is asked.
class DeafModule : public SuiteModule {
public:
    DeafModule() : SuiteModule(*moduleCard("system-junk")) {}
    ScanReport scan(const JobControl&) override {
        return {
            "system-junk",
            {{Uuid::random(), "/cache/a", 7, "Caches", {}}, {Uuid::random(), "/cache/b", 7, "Caches", {}}},
            {}};
    }
    CleanResult clean(const CleanSelection&, const JobControl&) override {
        gate.pass({});
        return {.removedCount = 1, .freedBytes = 7};
    }
    app::test::Gate gate;
};

TEST_F(OptimizeRunnerTest, WorkLeftToEndStillListsWhatItRemoved) {
    const auto deaf = std::make_shared<DeafModule>();
    deaf->gate.close();
    dependencies.dependencies.module = [&](std::string_view) {
        return deaf;
    };
    runner({.otherStep = milliseconds(20), .grace = milliseconds(20)});
    const RunRecord record = runner_->run(profileOf(true), Trigger::manual);
    EXPECT_EQ(record.outcome, Outcome::failed);
    EXPECT_TRUE(dependencies.journals.isOpen(record.id)) << "its list waits for the item";
    deaf->gate.open();
    runner_.reset();
    EXPECT_FALSE(dependencies.journals.isOpen(record.id));
    ASSERT_EQ(rowsOfLast().size(), 1u) << "the second item was not begun";
    EXPECT_EQ(rowsOfLast()[0].state, cleanState::trashed);
}

TEST_F(OptimizeRunnerTest, AKilledRunIsOneFailedRecordWithItsList) {
    RunLog::thisComputer();
    dependencies.junk->add("/cache/a", 5);
    dependencies.junk->add("/cache/b", 5);
    const auto child = vh::test::runInChild([&] {
        dependencies.dependencies.module = [&](std::string_view) {
            class Killer : public FakeModule {
                CleanResult clean(const CleanSelection& selection, const JobControl& control) override {
                    if (cleans++ == 1)
                        ::kill(::getpid(), SIGKILL);
                    return FakeModule::clean(selection, control);
                }
                int cleans = 0;
            };
            auto killer = std::make_shared<Killer>();
            killer->add("/cache/a", 5);
            killer->add("/cache/b", 5);
            return killer;
        };
        runner().run(profileOf(true), Trigger::manual);
    });
    EXPECT_EQ(child.status, 128 + SIGKILL);
    EXPECT_EQ(dependencies.journals
                  .recoverInterrupted([](const std::string& title) { return title + " was killed"; })
                  .size(),
              1u);
    ASSERT_EQ(dependencies.log.all().size(), 1u);
    EXPECT_EQ(dependencies.log.all()[0].summary, "Optimize was killed");
    EXPECT_EQ(dependencies.log.all()[0].outcome, Outcome::failed);
    EXPECT_EQ(rowsOfLast().size(), 2u);
    EXPECT_EQ(runner().run(profileOf(true), Trigger::manual).outcome, Outcome::success) << "its turn is free";
}

TEST_F(OptimizeRunnerTest, ACheckSaysWhatEachStepWouldDoAndRemovesNothing) {
    dependencies.junk->add("/cache/a", 5'000'000);
    OptimizeProfile profile = profileOf(true, {"clear-font-caches", "purge-memory"});
    profile.smartHealth = true;
    const auto checks = runner().check(profile);
    ASSERT_EQ(checks.size(), 4u);
    EXPECT_EQ(checks[0].detail, "1 item, 5 MB, would go to the Trash.");
    EXPECT_EQ(checks[1].title, "Rebuild font caches");
    EXPECT_EQ(checks[2].detail, "Would be skipped: it needs the privileged helper, which is not set up.");
    EXPECT_TRUE(checks[3].detail.starts_with("Could not be checked: "));
    for (const auto& check : checks)
        EXPECT_EQ(check.removes, &check == &checks[0]);
    EXPECT_TRUE(dependencies.log.all().empty());
    EXPECT_EQ(dependencies.junk->scan({}).items.size(), 1u);
    EXPECT_TRUE(runner_->snapshot().checkedAt);
    dependencies.junk->scanError = "no disk";
    EXPECT_EQ(runner_->check(profileOf(true))[0].detail, "Could not be checked: no disk");
}

TEST_F(OptimizeRunnerTest, AProfileIsReadAsItWasWrittenAndItsStepsStandInOrder) {
    EXPECT_EQ(OptimizeProfile::load(dependencies.defaults).maintenanceTasks,
              OptimizeProfile::standard().maintenanceTasks);
    for (const char* name : {"purge-memory", "restart-mac"})
        for (const auto& step : OptimizeProfile::standard().steps())
            EXPECT_EQ(step.payload.contains("tasks") ? step.payload.at("tasks").find(name)
                                                     : std::string::npos,
                      std::string::npos);
    dependencies.defaults.set(
        OptimizeProfile::key,
        decodeJson<OptimizeProfile>(
            R"({"smartHealth":true,"maintenanceTasks":["gone","purge-memory","flush-dns","purge-memory"],"cleanPrivacy":true,"cleanStorage":true})"));
    const OptimizeProfile profile = OptimizeProfile::load(dependencies.defaults);
    std::vector<ScheduledAction> order;
    for (const auto& step : profile.steps())
        order.push_back(step.action);
    EXPECT_EQ(order, (std::vector{ScheduledAction::cleanStorage, ScheduledAction::cleanPrivacy,
                                  ScheduledAction::maintenance, ScheduledAction::smartHealth}));
    EXPECT_EQ(profile.steps()[2].payload.at("tasks"), "purge-memory,flush-dns");
    profile.save(dependencies.defaults);
    EXPECT_EQ(dependencies.defaults.get<bool>(OptimizeProfile::rootStepsKey), true);
    dependencies.defaults.set(OptimizeProfile::key, "no profile");
    EXPECT_TRUE(OptimizeProfile::load(dependencies.defaults).cleanStorage);
}

} // namespace
} // namespace vh::automation::test
