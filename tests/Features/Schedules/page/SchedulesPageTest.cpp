#include "ui/WindowFixture.h"

#include "Automation/Automation.h"
#include "Features/Flows/NodesStore.h"
#include "Features/Flows/work/FlowsService.h"
#include "Features/Flows/work/NodesRunner.h"
#include "app/AutomationLife.h"

namespace vh::test {

namespace {

class SchedulesPage : public WindowFixture {
protected:
    QObject& schedules() { return *window().app().model("schedules"); }
    int count() { return schedules().property("taskCount").toInt(); }
    QString countText() { return schedules().property("countText").toString(); }
};

} // namespace

TEST_F(SchedulesPage, makesSwitchesRemovesAndBringsBackWithTheKeyboard) {
    openWindow();
    openPage("schedules");
    tabTo("Schedule a tool");
    press(Qt::Key_Return);
    waitForFocus("What runs");
    tabTo("Name");
    for (const auto key : {Qt::Key_N, Qt::Key_I, Qt::Key_G, Qt::Key_H, Qt::Key_T})
        press(key);
    tabTo("Time of day");
    press(Qt::Key_A, Qt::ControlModifier);
    for (const auto key : {Qt::Key_2, Qt::Key_9})
        press(key);
    press(Qt::Key_Return);
    EXPECT_EQ(count(), 0) << "there is no such hour; the form stays";
    press(Qt::Key_Backspace);
    press(Qt::Key_Return);
    ASSERT_EQ(count(), 1);

    waitForFocus("night, ");
    press(Qt::Key_Space);
    EXPECT_EQ(countText(), "1 schedule, 0 on");
    press(Qt::Key_Space);
    EXPECT_EQ(countText(), "1 schedule, 1 on");
    press(Qt::Key_Return);
    waitForFocus("What runs");
    press(Qt::Key_Escape);
    waitForFocus("night, ");
    press(Qt::Key_Delete);
    waitForFocus("Remove");
    press(Qt::Key_Return);
    EXPECT_EQ(count(), 0);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(count(), 1);
}

TEST_F(SchedulesPage, theWindowAsksBeforeItClosesOnARun) {
    openWindow();
    openPage("home");
    auto& life = window().app().life();
    flows::Flow flow = flows::Flow::blank("Slow", systemNow());
    const Uuid wait = Uuid::random();
    flow.nodes.push_back({.id = wait, .kind = flows::WaitNode{600}, .position = {640, 200}});
    flow.connect(flow.nodes[1].id, wait, flows::FlowEdge::Condition::always);
    ASSERT_TRUE(life.automation().service<automation::FlowsService>().runner().start(
        life.automation().service<automation::FlowsService>().store().save(flow), {}));
    waitUntil("the flow runs", [&] { return life.running() == QStringList("Slow"); });
    EXPECT_FALSE(window().quickWindow().close());
    waitForFocus("Keep the window open");
    press(Qt::Key_Return);
    EXPECT_EQ(life.running(), QStringList("Slow"));
    life.stop();
    waitUntil("it has stopped", [&] { return life.running().isEmpty(); });
    EXPECT_TRUE(window().quickWindow().close());
}

TEST_F(SchedulesPage, followUpsAreWishedForBesideTheTool) {
    fillCaches();
    openWindow();
    openPage("system-junk");
    tabTo("After each run…");
    press(Qt::Key_Return);
    waitForFocus("Mail to");
    for (const auto key : {Qt::Key_A, Qt::Key_At, Qt::Key_B})
        press(key);
    press(Qt::Key_Return);
    waitUntil("the button tells of the wish", [&] {
        return window().app().model("followUps")->property("knownAddresses").toStringList().contains("a@b");
    });
}

} // namespace vh::test
