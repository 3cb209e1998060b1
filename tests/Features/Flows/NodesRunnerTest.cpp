#include "Features/Flows/work/NodesRunner.h"

#include "Automation/ScheduledActions.h"
#include "Automation/ScriptLibrary.h"
#include "Core/FleetFolder.h"
#include "Features/Flows/NodesStore.h"
#include "Features/Flows/work/NodesExecutor.h"
#include "Mail/MailSender.h"
#include "Platform/Desktop.h"
#include "Platform/Files.h"
#include "Platform/PathParts.h"
#include "Platform/SecretStore.h"
#include "support/ChildWork.h"
#include "support/TestDependencies.h"

#include <csignal>
#include <filesystem>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace vh::automation::test {
namespace {

using namespace flows;
using Out = FlowNodeOutcome;

class SilentDesktop : public Desktop {
public:
    void notify(const std::string& title, const std::string& text) override {
        if (text == "refuse")
            throw std::runtime_error("nobody shows it");
        shown = title + "|" + text;
    }
    std::optional<std::chrono::milliseconds> idleTime() override { return std::nullopt; }
    std::optional<bool> isOnMains() override { return std::nullopt; }
    MainLoop::Token watchPower(MainLoop&, std::function<void()>) override { return {}; }
    std::string shown;
};

class NoSecrets : public SecretStore {
public:
    std::optional<std::string> get(const std::string&) override { return std::nullopt; }
    void set(const std::string&, const std::string&, const std::string&) override {}
    void remove(const std::string&) override {}
};

/// One process's runner.
struct Desk : TestDependencies {
    explicit Desk(const std::string& root)
        : TestDependencies(root), root_(root), schedules(root + "/schedules.json", LocalCalendar("UTC")),
          store(root + "/flows", schedules, loop.clock(), LocalCalendar("UTC")), scripts(root + "/scripts"),
          actions(dependencies), mail(defaults, secrets, log, dependencies.texts),
          executor(dependencies, actions, scripts, mail, desktop, outpost),
          runner(std::make_unique<NodesRunner>(dependencies, store, executor, mail)) {
        makeFolders(folders.home);
        actions.provide(copyAction,
                        [this](const ActionRequest& request, const JobControl&) { return copied(request); });
    }

    /// In the place of the tool that copies.
    RunRecord copied(const ActionRequest& request) {
        const auto run = log.begin(request.toolID, request.trigger, request.details);
        const std::string& folder = request.payload.at("folder");
        std::filesystem::create_directories(folder);
        std::string landed;
        for (const std::string& source : request.sources) {
            std::filesystem::copy(source, folder);
            landed += joinPath(folder, std::filesystem::path(source).filename().native()) + "\n";
        }
        return run->finish(Outcome::success, "Copied", {}, {{RunDetail::output, landed}});
    }

    /// A start, and after it each kind, all at once or one after the other.
    Flow draw(std::vector<FlowNodeKind> kinds, bool isChain = true, FlowTrigger trigger = OnDemand{}) {
        Flow flow = Flow::blank("Tidy", dependencies.clock());
        flow.nodes[0].kind = StartNode{std::move(trigger)};
        for (FlowNodeKind& kind : kinds) {
            const Uuid from = flow.nodes[isChain ? flow.nodes.size() - 1 : 1].id;
            flow.nodes.push_back({Uuid::random(), std::move(kind), {}, {}});
            EXPECT_TRUE(flow.connect(from, flow.nodes.back().id, FlowEdge::Condition::always));
        }
        return store.save(flow);
    }
    bool start(const Flow& flow, const FlowStart& how = {}) {
        end.reset();
        return runner->start(flow, how, [this](const FlowRunEnd& ended) { end = ended; });
    }
    void waitForEnd() {
        loop.waitUntil("the flow ends", [this] { return end.has_value(); });
    }
    const FlowNodeResult& result(const Flow& flow, size_t work = 0) const {
        return end->run.results.at(flow.nodes[work + 2].id);
    }

    const std::string root_;
    ScheduleStore schedules;
    NodesStore store;
    ScriptLibrary scripts;
    ScheduledActions actions;
    NoSecrets secrets;
    mail::MailSender mail;
    SilentDesktop desktop;
    FlowOutpost outpost;
    NodesExecutor executor;
    std::unique_ptr<NodesRunner> runner;
    std::optional<FlowRunEnd> end;
};

class NodesRunnerTest : public testing::Test {
protected:
    bool isThere(const std::string& name) const { return statusOf(dir / name).has_value(); }
    std::string read(const std::string& name) const { return readFileIfPresent(dir / name).value_or(""); }

    vh::test::TempDir dir;
    Desk desk{dir.path()};
};

TEST_F(NodesRunnerTest, EveryKindEndsInAResultThatSaysWhy) {
    writeFileAtomically(dir / "clip", "12345");
    desk.scripts.save("good", "#!/bin/sh -e\necho \"$VARNHOLT_FLOW:$VARNHOLT_FILES:$(cat)\"");
    desk.scripts.save("bad", "exit 7");
    desk.scripts.save("root", "#!/bin/sh\n# varnholt: system\nid");
    desk.scripts.save("loud", "head -c 400000 /dev/zero | tr '\\0' x");
    struct Row {
        FlowNodeKind kind;
        Out outcome;
        std::string summary;
    };
    const std::vector<Row> rows{
        {ScriptNode{"good"}, Out::success, "Ended with code 0"},
        {ScriptNode{"bad"}, Out::failed, "Ended with code 7"},
        {ScriptNode{"root"}, Out::failed, "root wants to act as administrator, which a flow may not."},
        {ScriptNode{"none"}, Out::failed, "There is no script called none."},
        {ScriptNode{"loud"}, Out::success, "Ended with code 0"},
        {CopyNode{"{files}", FleetFolder::documents}, Out::success, "Copied"},
        {CopyNode{"/no/such", FleetFolder::documents}, Out::failed, "/no/such does not exist."},
        {ToolNode{CleanStorageTool{}}, Out::success, "There was nothing to clean."},
        {ToolNode{DiskSpaceTool{"/"}}, Out::failed, ""},
        {NotifyNode{"done"}, Out::success, ""},
        {NotifyNode{"refuse"}, Out::warning, "The notification could not be shown."},
        {AgentNode{"why?", {}}, Out::failed, "There is no model that could answer."},
        {EmailNode{{{"a@b.example"}, "s", "b", true, true}}, Out::failed,
         "Mail is not set up: no message was sent."},
    };
    std::vector<FlowNodeKind> kinds;
    for (const Row& row : rows)
        kinds.push_back(row.kind);
    const Flow flow = desk.draw(kinds, false, OnNewFiles{desk.root_ + "/in", {}, 1});
    ASSERT_TRUE(desk.start(flow, {.trigger = FlowRunTrigger::newFiles,
                                  .event = "1 new file",
                                  .values = {.files = std::vector{dir / "clip"}}}));
    EXPECT_FALSE(desk.start(flow)) << "it runs already";
    desk.waitForEnd();
    for (size_t i = 0; i < rows.size(); ++i) {
        const FlowNodeResult& result = desk.result(flow, i);
        EXPECT_EQ(result.outcome, rows[i].outcome) << i << ": " << result.summary;
        if (!rows[i].summary.empty()) {
            EXPECT_EQ(result.summary, rows[i].summary);
        }
    }
    EXPECT_EQ(desk.result(flow, 0).output, fmt::format("Tidy:{0}:{0}\n", dir / "clip"));
    EXPECT_GT(desk.result(flow, 0).seconds, 0);
    EXPECT_LT(desk.result(flow, 4).output.size(), 263000u);
    EXPECT_EQ(readFile(desk.result(flow, 5).output.substr(0, desk.result(flow, 5).output.size() - 1)),
              "12345");
    EXPECT_EQ(desk.desktop.shown, "Tidy|done");
    EXPECT_EQ(desk.end->record.outcome, Outcome::failed);
    EXPECT_EQ(desk.end->record.trigger, Trigger::newFiles);
    EXPECT_EQ(desk.end->record.summary, "Tidy · 15 nodes");
    EXPECT_EQ(desk.end->record.detail(RunDetail::event), "1 new file");
    EXPECT_EQ(desk.store.runs(flow.id).size(), 1u);
    EXPECT_EQ(desk.runner->live().at(flow.id).size(), flow.nodes.size());
    EXPECT_FALSE(desk.runner->isRunning(flow.id));
}

TEST_F(NodesRunnerTest, OneComputerDoesOneThingAtATime) {
    const std::string body =
        fmt::format("cd {}; mkdir held || echo overlap\nsleep 0.1; rmdir held", dir.path());
    desk.scripts.save("a", body);
    const Flow flow = desk.draw({ScriptNode{"a"}, ScriptNode{"a"}, WaitNode{1'000'000'000'000'000}}, false);
    ASSERT_TRUE(desk.start(flow));
    const auto ended = [&](size_t work) {
        const auto& live = desk.runner->live().at(flow.id);
        const auto found = live.find(flow.nodes[work + 2].id);
        return found != live.end() && std::holds_alternative<FlowNodeResult>(found->second);
    };
    desk.loop.waitUntil("both scripts end", [&] { return ended(0) && ended(1); });
    desk.runner->stop(flow.id);
    desk.waitForEnd();
    EXPECT_EQ(desk.result(flow, 0).output + desk.result(flow, 1).output, "");
    EXPECT_EQ(desk.result(flow, 2).outcome, Out::cancelled);
    EXPECT_EQ(desk.end->record.outcome, Outcome::cancelled);
}

TEST_F(NodesRunnerTest, AStopReachesChildrenThatDoNotListen) {
    desk.scripts.save("deaf", fmt::format("trap '' TERM\n(trap '' TERM; echo $$ > {0}/child; sleep 600) &\n"
                                          "echo $! > {0}/pid; mv {0}/pid {0}/ready; wait; sleep 600",
                                          dir.path()));
    const Flow flow = desk.draw({ScriptNode{"deaf"}});
    ASSERT_TRUE(desk.start(flow));
    desk.loop.waitUntil("the child is there", [&] { return isThere("ready"); });
    desk.store.remove(flow.id); // it runs on without its file
    desk.runner->stop(flow.id);
    desk.waitForEnd();
    EXPECT_EQ(desk.result(flow).outcome, Out::cancelled);
    const pid_t child = std::stoi(read("ready"));
    desk.loop.waitUntil("the child is gone", [&] {
        const std::string state = readFileIfPresent(fmt::format("/proc/{}/stat", child)).value_or(") Z");
        return state.substr(state.rfind(')') + 2, 1) == "Z";
    });
    EXPECT_EQ(desk.summaries(), (std::vector<std::string>{"deaf: Stopped", "Tidy · 3 nodes"}));
}

TEST_F(NodesRunnerTest, APlanChangesNothing) {
    desk.scripts.save("touch", fmt::format("touch {}", dir / "touched"));
    const Flow flow = desk.draw({ScriptNode{"touch"}, CopyNode{"{files}", FleetFolder::documents}}, true,
                                OnNewFiles{desk.root_ + "/in", {}, 1});
    std::vector<std::string> lines;
    for (const FlowPlanLine& line : desk.runner->plan(flow, {}))
        lines.push_back(line.text);
    EXPECT_EQ(lines,
              (std::vector<std::string>{
                  "Start", "From here on, work on this computer", "Run the script touch",
                  fmt::format("Copy {{files}} into {}", pathOf(FleetFolder::documents, desk.folders))}));
    EXPECT_FALSE(isThere("touched"));
    EXPECT_FALSE(isThere("flows/" + flow.id.text() + ".running"));
    EXPECT_TRUE(desk.store.runs(flow.id).empty());
    EXPECT_TRUE(desk.log.all().empty());
}

TEST_F(NodesRunnerTest, RefusesFromOutsideInOrder) {
    EXPECT_EQ(desk.runner->runFromOutside(Uuid::random(), "link"), "There is no such flow any more.");
    const Flow byHand = desk.draw({WaitNode{1}});
    EXPECT_EQ(desk.runner->runFromOutside(byHand.id, "link"), "Tidy does not start from outside.");
    const Flow open = desk.draw({WaitNode{0}}, true, OnExternal{});
    const auto blocked = desk.runner->runFromOutside(open.id, "link");
    ASSERT_TRUE(blocked);
    EXPECT_TRUE(blocked->starts_with("Tidy: ")) << *blocked;
    const Flow good = desk.draw({WaitNode{3600}}, true, OnExternal{});
    EXPECT_EQ(desk.runner->runFromOutside(good.id, "link"), std::nullopt);
    EXPECT_EQ(desk.runner->runFromOutside(good.id, "link"), "Tidy is already running.");
    desk.runner.reset(); // stops it, and its record still lands
    EXPECT_EQ(desk.log.last("nodes")->outcome, Outcome::cancelled);
    EXPECT_EQ(desk.log.last("nodes")->trigger, Trigger::external);
    EXPECT_EQ(desk.store.runs(good.id).size(), 1u);
}

TEST_F(NodesRunnerTest, WhatKeepsItsFolderFromBeingWrittenIsARefusal) {
    const Flow flow = desk.draw({WaitNode{1}}, true, OnExternal{});
    const std::string lock = desk.store.folder() + "/" + flow.id.text() + ".lock";
    makeFolders(lock);
    EXPECT_FALSE(desk.start(flow));
    EXPECT_EQ(desk.runner->runFromOutside(flow.id, "link"), lock + ": it is a folder");
    EXPECT_TRUE(desk.runner->isRunning(flow.id)) << "it could run twice";
    EXPECT_TRUE(desk.log.all().empty());
}

TEST_F(NodesRunnerTest, AScheduledRunBlocksItsThreadAndEndsWithItsStop) {
    const Flow flow = desk.draw({WaitNode{3600}});
    ScheduledTask task;
    const auto run = [&](const CancelToken& cancel) {
        std::optional<RunRecord> record;
        std::thread thread([&] { record = desk.runner->runScheduled(task, cancel); });
        desk.loop.waitUntil("it is decided",
                            [&] { return !desk.log.all().empty() || desk.runner->isRunning(flow.id); });
        cancel.cancel();
        thread.join(); // with the main thread waiting here
        return *record;
    };
    task.payload["flow"] = Uuid::random().text();
    EXPECT_EQ(run({}).summary, "There is no such flow any more.");
    desk.log.removeAll();
    task.payload["flow"] = flow.id.text();
    const RunRecord record = run({});
    EXPECT_EQ(record.outcome, Outcome::cancelled);
    EXPECT_EQ(record.trigger, Trigger::scheduled);
    desk.loop.waitUntil("it ends", [&] { return !desk.runner->isRunning(flow.id); });
    EXPECT_EQ(desk.log.all().size(), 1u) << "one record a run";
}

TEST_F(NodesRunnerTest, AKilledRunIsRecordedAndGoesOnWhereItWas) {
    desk.scripts.save("once",
                      fmt::format("echo x >> {0}/once; [ -e {0}/again ] || touch {0}/started", dir.path()));
    desk.scripts.save("hang",
                      fmt::format("[ -e {0}/again ] || {{ touch {0}/hangs; sleep 20; }}", dir.path()));
    const Flow flow =
        desk.draw({ScriptNode{"once"}, ScriptNode{"hang"}}, true, OnNewFiles{desk.root_ + "/in", {}, 1});
    const auto outcome = vh::test::runInChild([&] {
        Desk other(dir.path());
        other.start(flow, {.values = {.files = std::vector<std::string>{"/kept"}}});
        other.loop.waitUntil("it hangs", [&] { return isThere("hangs"); });
        ::kill(::getpid(), SIGKILL);
    });
    ASSERT_EQ(outcome.status, 128 + SIGKILL) << outcome.message;
    desk.runner->recordInterrupted();
    EXPECT_EQ(desk.summaries(),
              (std::vector<std::string>{"once: Ended with code 0", "Tidy was interrupted before its end."}));
    const auto runs = desk.store.runs(flow.id);
    ASSERT_EQ(runs.size(), 1u);
    writeFileAtomically(dir / "again", "");
    ASSERT_TRUE(desk.start(flow, {.resume = runs[0].id}));
    desk.waitForEnd();
    EXPECT_EQ(read("once"), "x\n");
    EXPECT_EQ(desk.end->run.outcome(flow), Out::success);
    EXPECT_EQ(desk.end->run.resumed, runs[0].id);
    EXPECT_EQ(desk.end->run.values->files, std::vector<std::string>{"/kept"});
    EXPECT_FALSE(desk.start(flow, {.resume = Uuid::random()}));
}

} // namespace
} // namespace vh::automation::test
