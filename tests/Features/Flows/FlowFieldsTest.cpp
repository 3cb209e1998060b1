#include "Features/Flows/FlowFields.h"
#include "Features/Flows/FlowFieldWalk.h"

#include <gmock/gmock.h>

namespace vh::flows {
namespace {

std::string valueOf(const FlowNode& node, std::string_view key) {
    for (const FlowField& field : fieldsOf(node))
        if (field.key == key)
            return field.value;
    return "(no such field)";
}

/// One node of every kind, start, schedule and tool.
std::vector<FlowNode> everyNode() {
    std::vector<FlowNode> nodes;
    const auto add = [&](FlowNodeKind kind) {
        nodes.push_back({.kind = std::move(kind)});
    };
    for (const auto& name : caseNames<FlowTrigger>())
        add(StartNode{*caseNamed<FlowTrigger>(name)});
    for (const auto& name : caseNames<Schedule>())
        add(StartNode{OnSchedule{*caseNamed<Schedule>(name)}});
    for (const auto& name : caseNames<FleetTool>())
        add(ToolNode{*caseNamed<FleetTool>(name)});
    for (const auto& name : caseNames<FlowNodeKind>())
        add(*caseNamed<FlowNodeKind>(name));
    add(ComputerNode{FlowMachine{}});
    return nodes;
}

TEST(FlowFields, EachHasATitleAndTakesItsOwnValue) {
    for (const FlowNode& node : everyNode())
        for (const FlowField& field : fieldsOf(node)) {
            FlowNode copy = node;
            const bool isUnset = field.value.empty() && field.kind == FlowField::Kind::choice;
            EXPECT_EQ(setField(copy, field.key, field.value), !isUnset) << field.key;
            EXPECT_EQ(copy, node) << field.key;
            for (const Language language : allLanguages) {
                const Texts texts(language);
                EXPECT_FALSE(fieldTitle(field.key, texts).starts_with("nodes.")) << field.key;
                for (const std::string& choice : field.choices)
                    EXPECT_FALSE(choiceTitle(field.key, choice, texts).starts_with("nodes."))
                        << field.key << " " << choice;
            }
        }
}

TEST(FlowFields, HoldOnlyWhatTheyCanHold) {
    const struct {
        FlowNodeKind kind;
        const char* key;
        const char* value;
        bool isTaken;
    } rows[] = {
        {WaitNode{}, "wait.seconds", "90", true},
        {WaitNode{}, "wait.seconds", "-1", false},
        {WaitNode{}, "wait.seconds", "9e9", false},
        {WaitNode{}, "wait.seconds", "99999999999999999999", false},
        {WaitNode{}, "wait.minutes", "1", false},
        {StartNode{OnSchedule{}}, "start.schedule.daily.time", "23:59", true},
        {StartNode{OnSchedule{}}, "start.schedule.daily.time", "24:00", false},
        {StartNode{OnSchedule{}}, "start.schedule.kind", "weekly", true},
        {StartNode{OnSchedule{WeeklySchedule{}}}, "start.schedule.weekly.weekday", "7", true},
        {StartNode{OnSchedule{WeeklySchedule{}}}, "start.schedule.weekly.weekday", "0", false},
        {StartNode{}, "start.kind", "newFiles", true},
        {StartNode{}, "start.kind", "never", false},
        {ToolNode{}, "tool.kind", "rename", true},
        {ToolNode{NetworkTool{}}, "tool.network.probe", "dns", true},
        {ToolNode{NetworkTool{}}, "tool.network.probe", "rm", false},
        {ToolNode{MountShareTool{}}, "tool.mountShare.password", "x", false},
        {ToolNode{CopyMaterialTool{}}, "tool.copyMaterial.sources", "/a b\n{files}", true},
        {SyncNode{}, "sync.destinationNode", "", true},
        {SyncNode{}, "sync.destinationNode", "x", false},
        {CopyNode{}, "copy.folder", "desktop", true},
        {EmailNode{}, "email.attachLog", "true", true},
        {EmailNode{}, "email.attachLog", "yes", false},
    };
    for (const auto& row : rows) {
        FlowNode node{.kind = row.kind};
        EXPECT_EQ(setField(node, row.key, row.value), row.isTaken) << row.key << " " << row.value;
        if (row.isTaken)
            EXPECT_EQ(valueOf(node, row.key), row.value) << row.key;
        else
            EXPECT_EQ(node.kind, row.kind) << row.key;
    }
}

TEST(FlowFields, SuitWhatIsChosen) {
    FlowNode node{.kind = StartNode{OnDiskMounted{}}};
    ASSERT_TRUE(setField(node, "start.diskMounted.rule", "disk"));
    EXPECT_EQ(fieldsOf(node)[2].kind, FlowField::Kind::volume);
    ASSERT_TRUE(setField(node, "start.diskMounted.label", "Card"));
    ASSERT_TRUE(setField(node, "start.kind", "diskMounted")); // once more: what is filled in stays
    EXPECT_EQ(std::get<OnDiskMounted>(std::get<StartNode>(node.kind).trigger).match.label, "Card");
    ASSERT_TRUE(setField(node, "start.kind", "newFiles"));
    ASSERT_TRUE(setField(node, "start.newFiles.extensions", ".MOV  mxf"));
    EXPECT_EQ(valueOf(node, "start.newFiles.extensions"), "mov, mxf");
}

} // namespace
} // namespace vh::flows
