#include "Automation/ScheduledActions.h"
#include "Platform/Files.h"
#include "support/TestDependencies.h"

#include <gtest/gtest.h>

namespace vh::automation::test {
namespace {

TEST(SyncAction, SyncsThePairOfItsPayload) {
    const vh::test::TempDir dir;
    const TestDependencies dependencies(dir.path());
    const ScheduledActions actions(dependencies.dependencies);
    std::vector<std::string> said;
    const CancelToken cancel;
    const auto run = [&](std::map<std::string, std::string> payload, Trigger trigger) {
        return actions.run({.toolID = "sync", .actionID = "sync", .payload = std::move(payload)}, trigger,
                           {cancel, [&](double, std::string_view what) {
                                said.emplace_back(what);
                            }});
    };
    EXPECT_TRUE(actions.isThere(ScheduledAction::folderSync));
    const RunRecord lost = run({{"pair", Uuid::random().text()}}, Trigger::scheduled);
    EXPECT_EQ(lost.summary, "There is no such pair of folders any more: choose one in the schedule.");
    EXPECT_EQ(lost.outcome, Outcome::failed);
    EXPECT_TRUE(dependencies.log.find(lost.id));

    for (const char* folder : {"from", "to"})
        makeFolders(dir / folder);
    const std::map<std::string, std::string> payload{
        {"source", dir / "from"}, {"destination", dir / "to"}, {"flow", "F"}};
    EXPECT_EQ(run(payload, Trigger::scheduled).summary, "“from → to” is up to date.");
    EXPECT_EQ(said.front(), "Syncing from → to");
    writeFileAtomically(dir / "from/file", "text");
    const RunRecord record = run(payload, Trigger::flow);
    EXPECT_EQ(record.summary, "1 new, 0 changed, 0 moved to the Trash.");
    EXPECT_EQ(record.trigger, Trigger::flow);
    EXPECT_EQ(record.detail(RunDetail::flow), "F");
}

} // namespace
} // namespace vh::automation::test
