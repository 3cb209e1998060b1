#include "Features/Flows/FlowProblem.h"
#include "Core/Codec.h"
#include "Features/Flows/FlowFields.h"
#include "Features/Flows/FlowTexts.h"

#include <gmock/gmock.h>

namespace vh::flows {
namespace {

using testing::ElementsAre;
using Kind = FlowProblem::Kind;

Uuid add(Flow& flow, FlowNodeKind kind, const std::vector<Uuid>& after) {
    const Uuid id = Uuid::random();
    flow.nodes.push_back({id, std::move(kind), {}, ""});
    for (const Uuid& from : after)
        flow.edges.push_back({Uuid::random(), from, id, FlowEdge::Condition::always});
    return id;
}

std::vector<std::string> keysOf(const Flow& flow) {
    std::vector<std::string> keys;
    for (const FlowProblem& problem : problems(flow))
        keys.emplace_back(problem.key());
    return keys;
}

/// The JSON of a kind, without spaces and line feeds.
TEST(Flow, KindsAndTriggersHaveTheirForms) {
    const Uuid id = *Uuid::parse("0B0B0B0B-0000-4000-8000-00000000000B");
    const std::pair<FlowNodeKind, const char*> kinds[] = {
        {StartNode{}, R"({"start":{"_0":{"manual":{}}}})"},
        {ComputerNode{}, R"({"computer":{"_0":{"thisMac":{}}}})"},
        {ComputerNode{FlowMachine{"m", "L", false}},
         R"({"computer":{"_0":{"machine":{"id":"m","isMac":false,"label":"L"}}}})"},
        {ToolNode{OptimizeTool{}}, R"({"tool":{"_0":{"optimize":{}}}})"},
        {ScriptNode{"s"}, R"({"script":{"name":"s"}})"},
        {InstallNode{{"e"}}, R"({"install":{"entries":["e"]}})"},
        {RecipeNode{id}, R"({"recipe":{"id":"0B0B0B0B-0000-4000-8000-00000000000B"}})"},
        {SyncNode{"a", {}, "b", true},
         R"({"sync":{"deleteExtraneous":true,"destination":"b","source":"a"}})"},
        {CopyNode{"p", FleetFolder::shared}, R"({"copy":{"folder":"shared","path":"p"}})"},
        {AgentNode{"do", {}}, R"({"agent":{"prompt":"do"}})"},
        {WaitNode{5}, R"({"wait":{"seconds":5}})"},
        {NotifyNode{"m"}, R"({"notify":{"message":"m"}})"},
        {EmailNode{{{"a@b.org"}, "s", "b", true, false}},
         R"({"email":{"_0":{"attachLog":false,"body":"b","includeSummary":true,"recipients":["a@b.org"],"subject":"s"}}})"},
    };
    for (const auto& [kind, json] : kinds) {
        EXPECT_EQ(encodeJson(kind), json);
        EXPECT_EQ(decodeJson<FlowNodeKind>(json), kind) << json;
    }
    const char* triggers[] = {
        R"({"schedule":{"_0":{"daily":{"hour":9,"minute":0}},"runIfMissed":false}})",
        R"({"diskMounted":{"_0":{"label":"","rule":"name","scope":"external","value":""}}})",
        R"({"diskUnmounted":{"_0":{"label":"","rule":"name","scope":"external","value":""}}})",
        R"({"newFiles":{"extensions":[],"folder":"","settle":10}})",
        R"({"shareMounted":{"_0":{"host":"","name":""}}})",
        R"({"idle":{"minutes":10}})",
        R"({"flowFinished":{"_0":{"name":"","when":"any"}}})",
        R"({"manual":{}})",
        R"({"launch":{}})",
        R"({"power":{}})",
        R"({"external":{}})",
    };
    for (const char* json : triggers) {
        const auto trigger = decodeJson<FlowTrigger>(json);
        EXPECT_EQ(trigger, starting(kindOf(trigger))) << json;
        EXPECT_EQ(encodeJson(trigger), json);
    }
}

TEST(Flow, ConnectsOnlyWhereNoCircleCloses) {
    Flow flow = Flow::blank("a", {});
    const Uuid start = flow.nodes[0].id;
    const Uuid computer = flow.nodes[1].id;
    EXPECT_TRUE(problems(flow).empty());
    const Uuid wait = add(flow, WaitNode{}, {computer});
    const Uuid note = add(flow, NotifyNode{"m"}, {});
    EXPECT_TRUE(flow.connect(wait, note, FlowEdge::Condition::failure));
    for (const auto& [from, to] : {std::pair{note, computer},
                                   {note, start},
                                   {wait, wait},
                                   {wait, note},
                                   {wait, Uuid::random()},
                                   {Uuid::random(), wait}})
        EXPECT_FALSE(flow.connect(from, to, FlowEdge::Condition::always));
    EXPECT_TRUE(flow.canConnect(start, note));
    const Flow copy = flow.renewed();
    EXPECT_TRUE(problems(copy).empty());
    EXPECT_FALSE(copy.node(wait));
    flow.remove({computer});
    EXPECT_EQ(flow.edges.size(), 1U);
    EXPECT_EQ(flow.computer(note), FlowComputer(ThisMac{}));
}

TEST(FlowProblem, IsFoundInItsOrder) {
    Flow flow = Flow::blank("a", {});
    const Uuid start = flow.nodes[0].id;
    const Uuid here = flow.nodes[1].id;
    const Uuid there = add(flow, ComputerNode{FlowMachine{"w", "W", false}}, {start});
    const std::pair<FlowNodeKind, std::vector<std::string>> rows[] = {
        {ToolNode{OptimizeTool{}}, {"needs-mac"}},
        {ToolNode{FolderSyncTool{}}, {"needs-mac", "incomplete"}},
        {ScriptNode{" \n"}, {"incomplete"}},
        {ScriptNode{"{disk}"}, {"variable"}},
        {SyncNode{"a", here, "b"}, {"needs-mac"}},
        {SyncNode{"a", start, "b"}, {"needs-mac", "incomplete"}},
        {WaitNode{0}, {"incomplete"}},
        {EmailNode{{{"a@b.org", "nobody"}}}, {"incomplete"}},
        {NotifyNode{"{date} {unknown}"}, {}},
    };
    for (const auto& [kind, keys] : rows) {
        Flow with = flow;
        add(with, kind, {there});
        EXPECT_EQ(keysOf(with), keys) << encodeJson(kind);
    }
    add(flow, ToolNode{OptimizeTool{}}, {there, here});
    add(flow, WaitNode{}, {});
    EXPECT_THAT(keysOf(flow), ElementsAre("several-computers", "unreachable"));
    add(flow, StartNode{}, {});
    EXPECT_THAT(problems(flow), ElementsAre(FlowProblem{Kind::severalStarts, {}}));
    EXPECT_THAT(problems(Flow{}), ElementsAre(FlowProblem{Kind::noStart, {}}));
}

TEST(FlowProblem, MailThatCannotBeSentWarnsAlone) {
    Flow flow = Flow::blank("a", {});
    const Uuid good = add(flow, EmailNode{{{"a@b.org"}}}, {flow.nodes[0].id});
    add(flow, EmailNode{}, {flow.nodes[0].id});
    EXPECT_EQ(problems(flow, MailState::ready).size(), 1U);
    const auto found = problems(flow, MailState::notReady);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[1], (FlowProblem{Kind::noMail, good}));
    EXPECT_FALSE(found[1].blocks());
    EXPECT_EQ(problems(flow, MailState::notAllowed)[1].kind, Kind::mailNotAllowed);
}

TEST(FlowProblem, AFlowMayNotFeedItself) {
    Flow flow = Flow::blank("a", {});
    std::get<StartNode>(flow.nodes[0].kind).trigger = OnNewFiles{"/in/../watched/", {}, 1};
    for (const auto& [path, isInside] : {std::pair{"/watched", true},
                                         {"/watched/a/./b/", true},
                                         {"/watched2", false},
                                         {"{folder}/x", true},
                                         {"{carpeta}/../out", false},
                                         {"/out/{files}", false}}) {
        Flow with = flow;
        add(with, ToolNode{CopyMaterialTool{{"{files}"}, {path}, false}}, {flow.nodes[1].id});
        EXPECT_EQ(keysOf(with),
                  isInside ? std::vector<std::string>{"writes-into-watched"} : std::vector<std::string>{})
            << path;
    }
}

TEST(FlowProblem, WhatAFileMayHoldNeverRunsForEver) {
    Flow flow = Flow::blank("a", {});
    const Uuid start = flow.nodes[0].id;
    const auto edge = [&](const Uuid& from, const Uuid& to) {
        flow.edges.push_back({Uuid::random(), from, to, FlowEdge::Condition::always});
    };
    const Uuid one = add(flow, WaitNode{}, {start});
    const Uuid two = add(flow, WaitNode{}, {one});
    edge(two, one); // a circle
    const Uuid self = add(flow, WaitNode{}, {start});
    edge(self, self);                               // itself
    add(flow, WaitNode{}, {start, Uuid::random()}); // after nothing
    flow.nodes.push_back(flow.nodes[1]);            // the same name again
    edge(start, Uuid::random());                    // to nothing
    EXPECT_THAT(keysOf(flow),
                ElementsAre("unreachable", "unreachable", "unreachable", "unreachable", "unreachable"));
    edge(one, start);
    EXPECT_EQ(problems(flow).front(), (FlowProblem{Kind::unreachable, start}));
}

TEST(FlowProblem, ALongChainNeedsNoDeepStack) {
    Flow flow = Flow::blank("a", {});
    Uuid last = flow.nodes[1].id;
    for (int i = 0; i < 100'000; ++i)
        last = add(flow, WaitNode{1}, {last});
    EXPECT_TRUE(problems(flow).empty());
    EXPECT_TRUE(flow.reaches(flow.nodes[0].id, last));
    EXPECT_EQ(flow.ancestors(last).size(), 100'001U);
    EXPECT_EQ(flow.computers(last).size(), 1U);
}

TEST(FlowTrigger, MatchesVolumesSharesAndNames) {
    const FlowVolume card{.path = "/media/Card", .name = "Card A", .uuid = "12ab"};
    using Match = FlowDiskMatch;
    const std::pair<Match, bool> rows[] = {
        {{Match::Rule::name, " card a ", "", Match::Scope::external}, true},
        {{Match::Rule::prefix, "CARD", "", Match::Scope::any}, true},
        {{Match::Rule::disk, "12AB", "", Match::Scope::external}, true},
        {{Match::Rule::name, "card", "", Match::Scope::any}, false},
        {{Match::Rule::prefix, " ", "", Match::Scope::any}, false},
        {{Match::Rule::name, "card a", "", Match::Scope::network}, false},
    };
    for (const auto& [match, expected] : rows)
        EXPECT_EQ(match.matches(card), expected) << encodeJson(match);
    EXPECT_TRUE((FlowShare{{}, " NAS ", ""}.matches({}, "nas")));
    EXPECT_FALSE((FlowShare{{}, "", ""}.matches({}, "")));
    EXPECT_THAT(extensionsOf(".mov, MXF\n..wav ,"), ElementsAre("mov", "mxf", "wav"));
    EXPECT_TRUE(acceptsFile("/a.b/c.MOV", {"mov"}));
    for (const char* path : {"/a.mov/c", "/.mov", "/mov"})
        EXPECT_FALSE(acceptsFile(path, {"mov"})) << path;
    const Uuid id = Uuid::random();
    EXPECT_FALSE(isFilledIn(OnFlowFinished{{id, "", FlowFinish::any}}, id)); // itself
    EXPECT_TRUE(isFilledIn(OnFlowFinished{{id, "", FlowFinish::any}}, Uuid::random()));
    EXPECT_FALSE(accepts(FlowFinish::any, FlowNodeOutcome::skipped));
}

TEST(FlowRun, KeepsWhatNeedNotBeDoneAgain) {
    Flow flow = Flow::blank("a", {});
    const Uuid good = add(flow, WaitNode{}, {flow.nodes[1].id});
    const Uuid failed = add(flow, WaitNode{}, {good});
    const Uuid after = add(flow, WaitNode{}, {failed});
    FlowRun run;
    for (const FlowNode& node : flow.nodes)
        run.results[node.id] = {};
    run.results[failed].outcome = FlowNodeOutcome::failed;
    EXPECT_EQ(run.outcome(flow), FlowNodeOutcome::failed);
    const auto kept = resultsToKeep(flow, run.results);
    EXPECT_EQ(kept.size(), 3U);
    EXPECT_FALSE(kept.contains(after));
    flow.edges.back().condition = FlowEdge::Condition::failure;
    EXPECT_EQ(run.outcome(flow), FlowNodeOutcome::warning);
}

} // namespace
} // namespace vh::flows
