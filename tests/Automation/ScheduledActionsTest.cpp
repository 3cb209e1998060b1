#include "Automation/ScheduledActions.h"

#include "support/TestDependencies.h"

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
    TestDependencies dependencies{dir.path()};
    ScheduledActions actions{dependencies.dependencies};
    CancelToken cancel;
    std::vector<std::string> said;
    ScheduledTask clean{.toolID = "system-junk", .actionID = "system-junk", .payload = {{"flow", "F"}}};
};

TEST_F(ScheduledActionsTest, CleansAllToTheTrash) {
    EXPECT_EQ(run(clean).summary, "There was nothing to clean.");
    dependencies.junk->add("/cache/a", 5'000'000);
    dependencies.junk->add("/cache/b", 1'000'000);
    const RunRecord record = run(clean, Trigger::company);
    EXPECT_EQ(record.outcome, Outcome::success);
    EXPECT_EQ(record.summary, "Moved 2 items to the Trash, 6 MB.");
    EXPECT_EQ(record.metric(RunMetric::freedBytes), 6'000'000);
    EXPECT_EQ(record.metric(RunMetric::filesRemoved), 2);
    EXPECT_EQ(record.metric(RunMetric::errors), 0);
    EXPECT_EQ(record.detail(RunDetail::flow), "F");
    EXPECT_EQ(record.trigger, Trigger::company);
    EXPECT_EQ(said.front(), "Looking for what can go");
    dependencies.junk->add("/cache/c", 1, "Caches", "in use");
    const RunRecord stuck = run(clean);
    EXPECT_EQ(stuck.outcome, Outcome::warning) << "an item that had to stay is no failure";
    EXPECT_EQ(stuck.metric(RunMetric::errors), 1);
}

TEST_F(ScheduledActionsTest, EverythingEndsAsARecord) {
    dependencies.junk->scanError = "no disk";
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
        {"backups", "backups", {}, "“Back up” cannot run yet in this version. Nothing was done."},
        {"nodes", "nodes-flow", {{"flow", "F"}}, "There is no action “nodes-flow”."},
    };
    for (const Row& row : rows) {
        const RunRecord record = run({.toolID = row.tool, .actionID = row.action, .payload = row.payload});
        EXPECT_EQ(record.summary, row.summary);
        EXPECT_EQ(record.outcome, Outcome::failed) << row.summary;
        EXPECT_EQ(record.toolID, row.tool);
        EXPECT_EQ(record.metric(RunMetric::errors), 1) << row.summary;
        EXPECT_TRUE(dependencies.log.find(record.id)) << row.summary;
    }
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
