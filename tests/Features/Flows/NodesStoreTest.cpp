#include "Features/Flows/NodesStore.h"
#include "Core/Codec.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "support/TempDir.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace vh::flows {
namespace {

using testing::ElementsAre;

class NodesStoreTest : public testing::Test {
protected:
    NodesStoreTest() { ::setenv("HOME", home_.path().c_str(), 1); }

    NodesStore open() {
        return NodesStore(home_ / "flows", schedules, [this] { return now; });
    }
    static Flow flowAt(std::string name, Schedule schedule) {
        Flow flow = Flow::blank(std::move(name), {});
        std::get<StartNode>(flow.nodes[0].kind).trigger = OnSchedule{schedule, false};
        return flow;
    }

    test::TempDir home_;
    Date now = *parseIso8601("2026-05-01T10:00:00Z");
    ScheduleStore schedules{home_ / "schedules.json"};
};

TEST_F(NodesStoreTest, IsSharedAndLeavesAloneWhatItCannotRead) {
    NodesStore one = open();
    NodesStore two = open();
    EXPECT_TRUE(two.flows().empty());
    int told = 0;
    const auto observing = two.observe([&] { ++told; });
    const Flow first = one.save(Flow::blank("a", {}));
    now += std::chrono::seconds(1);
    const Flow second = one.save(Flow::blank("b", {}));
    const std::string damaged = home_ / ("flows/" + Uuid::random().text() + ".json");
    writeFileAtomically(damaged, "{");
    const std::string misnamed = home_ / "flows/notes.json";
    writeFileAtomically(misnamed, "{}");
    writeFileAtomically(home_ / ("flows/" + first.id.text() + ".json.varnholt-partial"), "{");
    two.load();
    two.load();
    EXPECT_EQ(told, 1);
    EXPECT_THAT(two.flows(), ElementsAre(second, first));
    EXPECT_THAT(two.damaged(), ElementsAre(damaged, misnamed));
    EXPECT_EQ(two.freeName([](int number) { return number == 1 ? "a" : "c"; }), "c");

    const auto copy = two.duplicate(first.id, "copy");
    ASSERT_TRUE(copy);
    EXPECT_NE(copy->id, first.id);
    two.remove(first.id);
    one.load();
    EXPECT_FALSE(one.flow(first.id));
    EXPECT_TRUE(std::filesystem::exists(damaged));
}

TEST_F(NodesStoreTest, MirrorsASchedule) {
    NodesStore store = open();
    Flow flow = store.save(flowAt("a", HourlySchedule{6}));
    EXPECT_TRUE(isFilledIn(OnSchedule{HourlySchedule{0}, false}, flow.id));
    EXPECT_FALSE(isFilledIn(OnSchedule{DailySchedule{25, 0}, false}, flow.id));
    const auto first = schedules.task(flow.id);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->nextRun, now + std::chrono::hours(6));
    EXPECT_EQ(first->actionID, flowAction);
    schedules.change(flow.id, [](ScheduledTask& task) { task.isEnabled = false; });

    now += std::chrono::hours(1);
    flow.name = "b";
    store.save(flow);
    const auto renamed = schedules.task(flow.id);
    EXPECT_EQ(renamed->title, "b");
    EXPECT_EQ(renamed->nextRun, first->nextRun);
    EXPECT_FALSE(renamed->isEnabled);

    std::get<OnSchedule>(std::get<StartNode>(flow.nodes[0].kind).trigger).schedule = HourlySchedule{2};
    store.save(flow);
    EXPECT_EQ(schedules.task(flow.id)->nextRun, now + std::chrono::hours(2));
    std::get<StartNode>(flow.nodes[0].kind).trigger = OnDemand{};
    store.save(flow);
    EXPECT_FALSE(schedules.task(flow.id));

    store.setCompany(flowAt("c", HourlySchedule{1}), "Ada");
    const Uuid sent = store.companyFlows().at(0).flow.id;
    EXPECT_EQ(schedules.task(sent)->company, "Ada");
    store.removeCompany(sent);
    EXPECT_TRUE(schedules.tasks().empty());
}

TEST_F(NodesStoreTest, KeepsTheLastRunsAndWhatAKillLeft) {
    NodesStore store = open();
    const Flow flow = store.save(Flow::blank("a", {}));
    FlowRun run{.flowID = flow.id, .startedAt = now};
    for (size_t i = 0; i < NodesStore::keptRuns + 3; ++i) {
        run.id = Uuid::random();
        store.record(run);
    }
    EXPECT_EQ(store.runs(flow.id).size(), NodesStore::keptRuns);
    EXPECT_EQ(store.runs(flow.id).front().id, run.id);

    run.id = Uuid::random();
    {
        const FileLock running = store.lockForRun(flow.id);
        ASSERT_TRUE(running);
        EXPECT_FALSE(open().lockForRun(flow.id));
        store.noteStarted(run);
        store.noteResult(run, flow.nodes[0].id, {FlowNodeOutcome::warning, "s", "", 1});
        EXPECT_TRUE(open().takeInterrupted().empty()); // it goes on
    }
    const auto taken = open().takeInterrupted();
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(taken[0].results.at(flow.nodes[0].id).summary, "s");
    EXPECT_TRUE(open().takeInterrupted().empty());
    EXPECT_EQ(store.runs(flow.id).front().id, run.id);
}

TEST_F(NodesStoreTest, ReadsOneRunAmongLongOnes) {
    NodesStore store = open();
    const Flow flow = store.save(Flow::blank("a", {}));
    EXPECT_FALSE(store.lastRun(flow.id));
    const std::string file = store.folder() + "/" + flow.id.text() + ".runs.json";
    FlowRun first{.id = Uuid::random(), .flowID = flow.id, .startedAt = now}, last = first;
    last.id = Uuid::random();
    first.results[flow.nodes[0].id].output = std::string(200'000, 'x');
    last.results[flow.nodes[0].id].output = "  }\n  }]" + std::string(200'000, 'y');
    store.record(first);
    EXPECT_EQ(store.lastRun(flow.id)->id, first.id);
    store.record(last);
    EXPECT_EQ(store.lastRun(flow.id)->results, last.results);
    EXPECT_EQ(store.run(flow.id, first.id)->results, first.results);
    EXPECT_FALSE(store.run(flow.id, Uuid::random()));
    // Written by something else: without line feeds, and with a run that this version does not know before it.
    writeFileAtomically(file, "[{\n  \"id\":{\n  }},{}," + encodeJson(first) + "]");
    EXPECT_EQ(store.lastRun(flow.id)->id, first.id);
    EXPECT_EQ(store.run(flow.id, first.id)->results, first.results);
    writeFileAtomically(file, "[{");
    EXPECT_FALSE(store.lastRun(flow.id));
}

} // namespace
} // namespace vh::flows
