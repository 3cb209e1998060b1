#include "Features/Flows/view/FlowEditorViewModel.h"

#include "Automation/Automation.h"
#include "Features/Flows/NodesStore.h"
#include "Features/Flows/view/FlowListViewModel.h"
#include "Features/Flows/work/FlowsService.h"
#include "Features/Flows/work/NodesRunner.h"
#include "support/view/Desk.h"

#include <QPointF>
#include <algorithm>

namespace vh::app::test {
namespace {

using namespace flows;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A flow "Tidy": by hand, on this computer, then wait; the three stand in a row.
struct FlowEditor : testing::Test {
    Desk desk;
    automation::Automation& automation = desk.context.automation();
    NodesStore& store = automation.service<automation::FlowsService>().store();
    Flow flow = store.save(tidy());
    FlowEditorViewModel editor{desk.context, automation};

    static Flow tidy() {
        Flow flow = Flow::blank("Tidy", noon);
        const Uuid wait = Uuid::random();
        flow.nodes.push_back({.id = wait, .kind = WaitNode{1}, .position = {640, 200}});
        flow.connect(flow.nodes[1].id, wait, FlowEdge::Condition::always);
        return flow;
    }
    FlowEditor() { EXPECT_TRUE(editor.open(text(flow.id))); }

    static QString text(const Uuid& id) { return QString::fromStdString(id.text()); }
    QString node(size_t at) const { return text(flow.nodes[at].id); }
    QString edge(size_t at) const { return text(flow.edges[at].id); }
    std::vector<std::string> nodes(const char* role) { return column(editor.nodes(), role); }
    std::vector<std::string> edges(const char* role) { return column(editor.edges(), role); }
    const Flow& stored() { return *store.flow(flow.id); }
    /// What another process would do.
    void changeElsewhere(const std::string& name) {
        Flow theirs = stored();
        theirs.name = name;
        store.save(theirs);
    }
};

TEST_F(FlowEditor, JoinsOnlyWhatCanBeJoinedAndSaysWhyNot) {
    const struct {
        size_t from, to;
        const char* fault;
    } cases[] = {{1, 0, "A start has nothing before it."},
                 {2, 1, "That would go round in a circle."},
                 {0, 1, "These two are joined already."},
                 {0, 2, ""}};
    for (const auto& each : cases) {
        editor.beginConnect(node(each.from));
        editor.aim(node(each.to));
        EXPECT_EQ(editor.connectFault().toStdString(), each.fault);
        EXPECT_EQ(nodes("aim")[each.to], *each.fault ? "bad" : "good");
        EXPECT_EQ(editor.finishConnect(), !*each.fault);
    }
    EXPECT_THAT(edges("edgeId"), SizeIs(3));
    EXPECT_EQ(editor.selectedEdge().toStdString(), edges("edgeId")[2]) << "the new edge is selected";
}

TEST_F(FlowEditor, RemembersHowItsInspectorWasLeft) {
    EXPECT_EQ(editor.inspectorStanding(), "") << "the view decides";
    editor.setInspectorStanding("folded");
    EXPECT_EQ(FlowEditorViewModel(desk.context, automation).inspectorStanding(), "folded");
}

TEST_F(FlowEditor, KnowsAFlowToWhichNothingWasAdded) {
    EXPECT_FALSE(editor.isBlank());
    ASSERT_TRUE(editor.open(text(store.save(Flow::blank("New", noon)).id)));
    EXPECT_TRUE(editor.isBlank());
    editor.addNext("wait");
    EXPECT_FALSE(editor.isBlank());
}

TEST_F(FlowEditor, GoesBackAndForthStepByStep) {
    editor.select(node(2));
    editor.setField("wait.seconds", "2");
    editor.setField("wait.seconds", "25");
    for (const double x : {660.0, 701.0, 719.0})
        editor.moveTo(node(2), x, 204);
    editor.turnCondition(edge(1));
    EXPECT_THAT(nodes("nodeX"), ElementsAre("120", "380", "720")) << "on the grid";
    EXPECT_THAT(edges("condition"), ElementsAre("always", "success"));

    editor.undo();
    EXPECT_THAT(edges("condition"), ElementsAre("always", "always"));
    editor.undo();
    EXPECT_THAT(nodes("nodeX"), ElementsAre("120", "380", "640")) << "one drag is one step";
    EXPECT_THAT(column(editor.fields(), "value"), ElementsAre("25"));
    editor.undo();
    EXPECT_THAT(column(editor.fields(), "value"), ElementsAre("1")) << "typing in one field is one step";
    EXPECT_FALSE(editor.canUndo());
    editor.redo();
    editor.redo();
    EXPECT_THAT(nodes("nodeX"), ElementsAre("120", "380", "720"));
    editor.removeSelected();
    EXPECT_THAT(nodes("title"), SizeIs(2));
    EXPECT_FALSE(editor.canRedo());
    editor.undo();
    EXPECT_THAT(edges("condition"), SizeIs(2)) << "a node comes back with its edges";
}

TEST_F(FlowEditor, AddsAfterTheSelectedNodeWhereThereIsRoom) {
    editor.select(node(0));
    editor.addNext("notify");
    const Flow& now = (editor.save(), stored());
    ASSERT_EQ(now.nodes.size(), 4u);
    EXPECT_EQ(editor.selectedNode(), text(now.nodes[3].id));
    EXPECT_TRUE(std::holds_alternative<NotifyNode>(now.nodes[3].kind));
    EXPECT_EQ(now.inputs(now.nodes[3].id).at(0).from, flow.nodes[0].id);
    EXPECT_EQ(now.nodes[3].position.x, 360);
    EXPECT_GT(now.nodes[3].position.y, 200 + canvas::nodeHeight) << "not upon the computer";
    EXPECT_THAT(column(editor.problems(), "text"), ElementsAre("Something is not filled in yet."));
    EXPECT_TRUE(editor.isBlocked());
    editor.addNext("start");
    EXPECT_THAT(nodes("kind"), SizeIs(4)) << "one start is enough";
    EXPECT_THAT(column(editor.addOptions(), "value"), SizeIs(11));
}

TEST_F(FlowEditor, FillsInFieldsAndOffersTheVariablesOfTheStart) {
    editor.select(node(0));
    editor.setField("start.kind", "newFiles");
    EXPECT_THAT(column(editor.variables(), "token"), ElementsAre("{files}", "{folder}", "{date}", "{time}"));
    const auto keys = column(editor.fields(), "fieldKey");
    EXPECT_NE(std::ranges::find(keys, "start.newFiles.folder"), keys.end());
    editor.setField("start.newFiles.settle", "soon");
    EXPECT_THAT(column(editor.fields(), "value"), testing::Contains("10")) << "no number, no change";
    EXPECT_EQ(editor.problems().size(), 1) << "no folder yet";
    editor.setField("start.newFiles.folder", "/in");
    EXPECT_THAT(editor.problems(), IsEmpty());
    EXPECT_EQ(editor.line(), "Starts when new files lie still for 10 s in in");
}

TEST_F(FlowEditor, GoesFromNodeToNodeAndAlongEdges) {
    const auto selected = [&] {
        return editor.selectedNode();
    };
    editor.step("right");
    EXPECT_EQ(selected(), node(0));
    editor.step("right");
    editor.step("right");
    EXPECT_EQ(selected(), node(2));
    editor.step("down");
    EXPECT_EQ(selected(), node(2)) << "nothing there";
    editor.step("left");
    editor.stepEdge();
    EXPECT_EQ(editor.selectedEdge(), edge(1));
    editor.step("left");
    EXPECT_EQ(selected(), node(1));
    EXPECT_EQ(editor.nodeAt(650, 210), node(2));
    EXPECT_EQ(editor.edgeAt(600, 231, 6), edge(1));
    EXPECT_EQ(editor.edgeAt(600, 260, 6), QString());
}

TEST_F(FlowEditor, StoresByItselfAndTellsWhenAnotherChangedTheSame) {
    editor.rename("Tidier");
    ASSERT_TRUE(waitFor([&] { return stored().name == "Tidier"; }));
    EXPECT_EQ(editor.trouble(), QString());

    changeElsewhere("Theirs");
    EXPECT_EQ(editor.name(), "Theirs") << "without changes here it follows";
    editor.undo();
    EXPECT_EQ(editor.name(), "Tidier");
    ASSERT_TRUE(editor.save());

    editor.rename("Mine");
    changeElsewhere("Theirs again");
    EXPECT_EQ(editor.trouble(), "conflict");
    EXPECT_FALSE(editor.save());
    EXPECT_EQ(stored().name, "Theirs again") << "nothing is written over";
    editor.takeTheirs();
    EXPECT_EQ(editor.name(), "Theirs again");
    editor.undo();
    EXPECT_EQ(editor.name(), "Mine");

    store.remove(flow.id);
    EXPECT_EQ(editor.trouble(), "gone");
    editor.keepMine();
    EXPECT_EQ(stored().name, "Mine");
}

TEST_F(FlowEditor, ShowsARunWhileItGoesOnAndAfterwards) {
    editor.toggleDryRun();
    EXPECT_THAT(editor.plan(), SizeIs(3));
    EXPECT_EQ(nodes("planText")[2].empty(), false);
    editor.run();
    ASSERT_TRUE(waitFor([&] { return nodes("nodeState")[2] == "running"; }));
    EXPECT_TRUE(editor.isRunning());
    EXPECT_FALSE(editor.isPlanned());
    ASSERT_TRUE(waitFor([&] { return editor.runCount() == 1; }));
    EXPECT_THAT(nodes("nodeState"), ElementsAre("success", "success", "success"));
    EXPECT_THAT(column(editor.runs(), "outcome"), ElementsAre("success"));

    editor.select(node(2));
    editor.setField("wait.seconds", "60");
    editor.run();
    ASSERT_TRUE(waitFor([&] { return nodes("nodeState")[2] == "running"; }));
    editor.stop();
    ASSERT_TRUE(waitFor([&] { return editor.runCount() == 2; }));
    EXPECT_EQ(nodes("nodeState")[2], "cancelled");
    const auto runs = column(editor.runs(), "runId");
    editor.showRun(QString::fromStdString(runs[1]));
    EXPECT_EQ(nodes("nodeState")[2], "success") << "as it went then";
    editor.setField("wait.seconds", "1");
    editor.resume(QString::fromStdString(runs[0]));
    ASSERT_TRUE(waitFor([&] { return editor.runCount() == 3; }));
    EXPECT_EQ(stored().id, flow.id);
    EXPECT_EQ(store.runs(flow.id)[0].resumed, Uuid::parse(runs[0]));
}

TEST_F(FlowEditor, ARunByHandIsToldWhatAStartWouldSay) {
    editor.select(node(0));
    editor.setField("start.kind", "newFiles");
    editor.setField("start.newFiles.folder", "/in");
    EXPECT_THAT(editor.neededValues(), IsEmpty());
    editor.select(node(1));
    editor.addNext("script");
    editor.setField("script.name", "{files} of {date}");
    EXPECT_THAT(column(editor.neededValues(), "name"), ElementsAre("files"));
    editor.run({{"files", "~/clip.mov"}});
    ASSERT_TRUE(waitFor([&] { return editor.runCount() == 1; }));
    const auto values = store.runs(flow.id)[0].values;
    ASSERT_TRUE(values && values->files);
    EXPECT_THAT(*values->files, ElementsAre(desk.session.folders().home + "/clip.mov"));
}

TEST_F(FlowEditor, AThousandNodesChangeOneRowPerKeystroke) {
    Flow large = Flow::blank("Large", noon);
    for (int i = 0; i < 1000; ++i) {
        large.nodes.push_back({.id = Uuid::random(), .kind = WaitNode{1}, .position = {240.0 * i, 400}});
        large.connect(large.nodes[static_cast<size_t>(i) + 1].id, large.nodes.back().id,
                      FlowEdge::Condition::always);
    }
    large = store.save(large);
    ASSERT_TRUE(editor.open(text(large.id)));
    editor.select(text(large.nodes[500].id));
    int rows = 0;
    QObject::connect(
        editor.nodes(), &QAbstractItemModel::dataChanged, &editor,
        [&](const QModelIndex& first, const QModelIndex& last) { rows += last.row() - first.row() + 1; });
    const auto resets = countOf(editor.nodes(), &QAbstractItemModel::rowsInserted);
    editor.setTitle("A new title");
    EXPECT_EQ(rows, 1);
    EXPECT_EQ(*resets, 0);
}

TEST_F(FlowEditor, TheListCopiesRenamesExportsAndTakesIn) {
    FlowListViewModel list(desk.context, automation);
    EXPECT_THAT(column(list.flows(), "startText"), ElementsAre("Starts by hand"));
    const QString copy = list.duplicate(text(flow.id));
    EXPECT_THAT(column(list.flows(), "flowName"), testing::UnorderedElementsAre("Tidy", "Tidy copy"));
    EXPECT_TRUE(list.rename(copy, " Second "));
    EXPECT_FALSE(list.rename(copy, " "));

    const QString file = list.exportPath(copy, "~");
    ASSERT_TRUE(list.exportFile(copy, file));
    EXPECT_NE(list.exportPath(copy, "~"), file) << "nothing is written over";
    const QString again = list.importFile(file);
    EXPECT_THAT(column(list.flows(), "flowName"),
                testing::UnorderedElementsAre("Tidy", "Second", "Second 2"));
    EXPECT_NE(again, copy);
    EXPECT_EQ(list.importFile("~/nothing.json"), QString());
    EXPECT_NE(list.message(), QString());
    EXPECT_TRUE(list.remove(copy));
    EXPECT_EQ(list.indexOf(copy), -1);
    EXPECT_NE(list.create(), QString());
    EXPECT_EQ(list.count(), 3);
}

} // namespace
} // namespace vh::app::test
