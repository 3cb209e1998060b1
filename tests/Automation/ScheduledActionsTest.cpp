#include "Automation/ScheduledActions.h"

#include "Platform/Files.h"
#include "support/TestWorld.h"

#include <gtest/gtest.h>

namespace vh::automation::test {
namespace {

class ScheduledActionsTest : public testing::Test {
protected:
    RunRecord run(ScheduledTask task, Trigger trigger = Trigger::scheduled) {
        return actions.run(task, trigger, {cancel, [&](double, std::string_view what) {
                                               said.emplace_back(what);
                                           }});
    }

    vh::test::TempDir dir;
    TestWorld world{dir.path()};
    ScheduledActions actions{world.world};
    CancelToken cancel;
    std::vector<std::string> said;
    ScheduledTask clean{.toolID = "system-junk", .actionID = "system-junk", .payload = {{"flow", "F"}}};
};

TEST_F(ScheduledActionsTest, CleansAllToTheTrash) {
    EXPECT_EQ(run(clean).summary, "There was nothing to clean.");
    world.junk->add("/cache/a", 5'000'000);
    world.junk->add("/cache/b", 1'000'000);
    const RunRecord record = run(clean, Trigger::company);
    EXPECT_EQ(record.outcome, Outcome::success);
    EXPECT_EQ(record.summary, "Moved 2 items to the Trash, 6 MB.");
    EXPECT_EQ(record.metric(RunMetric::freedBytes), 6'000'000);
    EXPECT_EQ(record.metric(RunMetric::filesRemoved), 2);
    EXPECT_EQ(record.metric(RunMetric::errors), 0);
    EXPECT_EQ(record.detail(RunDetail::flow), "F");
    EXPECT_EQ(record.trigger, Trigger::company);
    EXPECT_EQ(said.front(), "Looking for what can go");
    world.junk->add("/cache/c", 1, "Caches", "in use");
    const RunRecord stuck = run(clean);
    EXPECT_EQ(stuck.outcome, Outcome::warning) << "an item that had to stay is no failure";
    EXPECT_EQ(stuck.metric(RunMetric::errors), 1);
}

TEST_F(ScheduledActionsTest, EverythingEndsAsARecord) {
    world.junk->scanError = "no disk";
    EXPECT_EQ(run(clean).summary, "no disk");
    cancel.cancel();
    EXPECT_EQ(run(clean).outcome, Outcome::cancelled);
    cancel = {};
    struct Row {
        const char* tool;
        const char* action;
        std::map<std::string, std::string> payload;
        const char* summary;
    };
    const Row rows[] = {
        {"system-junk", "no\nsuch", {}, "There is no action “no\\x0Asuch”."},
        {"company-sync", "sync", {}, "“Company sync” cannot run yet in this version. Nothing was done."},
        {"privacy-cleaner",
         "privacy-cleaner",
         {},
         "“Clear browsing traces” cannot run yet in this version. Nothing was done."},
        {"sync",
         "sync",
         {{"pair", Uuid::random().text()}},
         "There is no such pair of folders any more: choose one in the schedule."},
        {"backups", "backups", {}, "“Back up” cannot run yet in this version. Nothing was done."},
        {"maintenance", "maintenance", {}, "No maintenance task is chosen."},
        {"maintenance", "maintenance", {{"tasks", "bogus,,Flush-DNS"}}, "No maintenance task is chosen."},
        {"nodes", "nodes-flow", {{"flow", "F"}}, "There is no action “nodes-flow”."},
    };
    for (const Row& row : rows) {
        const RunRecord record = run({.toolID = row.tool, .actionID = row.action, .payload = row.payload});
        EXPECT_EQ(record.summary, row.summary);
        EXPECT_EQ(record.outcome, Outcome::failed) << row.summary;
        EXPECT_EQ(record.toolID, row.tool);
        EXPECT_EQ(record.metric(RunMetric::errors), 1) << row.summary;
        EXPECT_TRUE(world.log.find(record.id)) << row.summary;
    }
}

TEST_F(ScheduledActionsTest, SyncsThePairOfItsPayload) {
    for (const char* folder : {"from", "to"})
        makeFolders(dir / folder);
    const ScheduledTask task{
        .toolID = "sync",
        .actionID = "sync",
        .payload = {{"source", dir / "from"}, {"destination", dir / "to"}, {"flow", "F"}}};
    EXPECT_EQ(run(task).summary, "“from → to” is up to date.");
    EXPECT_EQ(said.front(), "Syncing from → to");
    writeFileAtomically(dir / "from/file", "text");
    const RunRecord record = run(task, Trigger::flow);
    EXPECT_EQ(record.summary, "1 new, 0 changed, 0 moved to the Trash.");
    EXPECT_EQ(record.trigger, Trigger::flow);
    EXPECT_EQ(record.detail(RunDetail::flow), "F");
    EXPECT_TRUE(actions.isThere(ScheduledAction::folderSync));
}

TEST_F(ScheduledActionsTest, MaintenanceRunsWhatItCanAndNamesTheRest) {
    const auto rawPlan = world.chores.planOf;
    world.chores.planOf = [&](MaintenanceTask task) {
        if (task == MaintenanceTask::restartDock)
            return helper::MaintenancePlan{
                {}, helper::MaintenancePlan::Hindrance::programs, {"no-such-panel"}};
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
        const RunRecord record =
            run({.toolID = "maintenance", .actionID = "maintenance", .payload = {{"tasks", row.tasks}}});
        EXPECT_EQ(record.outcome, row.outcome) << record.summary;
        EXPECT_EQ(record.metric(RunMetric::itemsProcessed), row.done) << record.summary;
        EXPECT_EQ(record.metric(RunMetric::errors), row.errors) << record.summary;
        for (const char* words : row.named)
            EXPECT_NE(record.summary.find(words), std::string::npos) << record.summary;
    }
    const std::string output = world.log.last("maintenance")->detail(RunDetail::output).value_or("");
    EXPECT_NE(output.find("exit 7"), std::string::npos) << "how a task ended stands last";
    EXPECT_NE(output.find("clear-font-caches"), std::string::npos);
    EXPECT_LT(output.size(), 4000u);
    cancel.cancel();
    EXPECT_EQ(
        run({.toolID = "maintenance", .actionID = "maintenance", .payload = {{"tasks", "clear-font-caches"}}})
            .outcome,
        Outcome::cancelled);
}

TEST_F(ScheduledActionsTest, AFlowIsRunByWhoRunsFlows) {
    actions.provide(flowAction, [](const ActionRequest& request, const JobControl&) {
        return RunRecord{.summary = request.payload.at("flow")};
    });
    EXPECT_EQ(
        run({.toolID = "nodes", .actionID = std::string(flowAction), .payload = {{"flow", "F"}}}).summary,
        "F");
}

} // namespace
} // namespace vh::automation::test
