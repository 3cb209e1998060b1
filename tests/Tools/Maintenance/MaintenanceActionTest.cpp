#include "Automation/ScheduledActions.h"
#include "support/TestDependencies.h"

#include <gtest/gtest.h>

namespace vh::automation::test {
namespace {

TEST(MaintenanceAction, RunsWhatItCanAndNamesTheRest) {
    const vh::test::TempDir dir;
    TestDependencies dependencies(dir.path());
    const ScheduledActions actions(dependencies.dependencies);
    CancelToken cancel;
    const auto run = [&](const char* tasks) {
        return actions.run(
            {.toolID = "maintenance", .actionID = "maintenance", .payload = {{"tasks", tasks}}},
            Trigger::scheduled, {cancel, [](double, std::string_view) {
                                 }});
    };
    for (const char* nothing : {"", "bogus,,Flush-DNS"}) {
        const RunRecord record = run(nothing);
        EXPECT_EQ(record.summary, "No maintenance task is chosen.");
        EXPECT_EQ(record.outcome, Outcome::failed);
    }
    const auto rawPlan = dependencies.chores.planOf;
    dependencies.chores.planOf = [&](MaintenanceTask task) {
        if (task == MaintenanceTask::restartDock)
            return helper::MaintenancePlan{{}, helper::MaintenancePlan::Blocker::programs, {"no-such-panel"}};
        if (task == MaintenanceTask::resetQuickLook)
            return helper::MaintenancePlan{{{"/bin/sh", {"-c", "yes long line | head -c 9000; exit 7"}}}};
        return rawPlan(task);
    };
    struct Row {
        const char* tasks;
        Outcome outcome;
        int done, errors;
        std::vector<const char*> named;
    };
    const Row rows[] = {
        {"rebuild-launchservices, clear-font-caches ,bogus,clear-font-caches",
         Outcome::success,
         2,
         0,
         {"2 tasks done."}},
        {"purge-memory", Outcome::failed, 0, 1, {"1 task needs the privileged helper"}},
        {"purge-memory,clear-font-caches", Outcome::warning, 1, 1, {"1 task done.", "privileged helper"}},
        {"restart-dock,reset-quicklook,clear-font-caches", Outcome::warning, 1, 2, {"no-such-panel"}},
    };
    for (const Row& row : rows) {
        const RunRecord record = run(row.tasks);
        EXPECT_EQ(record.outcome, row.outcome) << record.summary;
        EXPECT_EQ(record.metric(RunMetric::itemsProcessed), row.done) << record.summary;
        EXPECT_EQ(record.metric(RunMetric::errors), row.errors) << record.summary;
        for (const char* words : row.named)
            EXPECT_NE(record.summary.find(words), std::string::npos) << record.summary;
    }
    const std::string output = dependencies.log.last("maintenance")->detail(RunDetail::output).value_or("");
    EXPECT_NE(output.find("exit 7"), std::string::npos) << "how a task ended stands last";
    EXPECT_NE(output.find("clear-font-caches"), std::string::npos);
    EXPECT_LT(output.size(), 4000u);
    cancel.cancel();
    EXPECT_EQ(run("clear-font-caches").outcome, Outcome::cancelled);
}

} // namespace
} // namespace vh::automation::test
