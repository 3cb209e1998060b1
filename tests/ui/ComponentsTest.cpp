#include "ui/WindowFixture.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>
#include <algorithm>

namespace vh::test {

namespace {

class Components : public WindowFixture {
protected:
    /// The item that a piece of QML makes, in the open window.
    QQuickItem* make(const QByteArray& source) {
        openWindow();
        auto& quick = window().quickWindow();
        QQmlComponent component(qmlEngine(&quick));
        component.setData("import QtQuick\nimport Varnholt\n" + source, {});
        auto* item = qobject_cast<QQuickItem*>(component.create());
        EXPECT_NE(item, nullptr) << component.errorString().toStdString();
        if (item) {
            item->setParent(&quick);
            item->setParentItem(quick.contentItem());
        }
        return item;
    }
};

QList<qreal> barValues(QQuickItem* item) {
    QList<qreal> values;
    for (auto* child : item->childItems()) {
        if (QString::fromLatin1(child->metaObject()->className()).startsWith("Bar_"))
            values << child->property("value").toReal();
        values += barValues(child);
    }
    return values;
}

} // namespace

TEST_F(Components, aBeltShowsEachStepWithItsOwnProgress) {
    auto* belt = make(R"(ProgressBelt { width: 300
        steps: [{title: "Caches", value: 1}, {title: "Privacy", value: 0.5}, {title: "Drives", value: 0}] })");
    ASSERT_NE(belt, nullptr);
    EXPECT_EQ(barValues(belt), (QList<qreal>{1, 0.5, 0}));
}

TEST_F(Components, headingAndRowsOfATableShareTheirWidths) {
    auto* item = make("Item { width: ActivityColumns.time; height: ScheduleColumns.next }");
    ASSERT_NE(item, nullptr);
    EXPECT_GT(item->width(), 0);
    EXPECT_GT(item->height(), 0);
}

TEST_F(Components, aDropZoneSaysWhatItIsFor) {
    auto* zone = make(R"(DropZone { width: 300; text: "Drop folders here" })");
    ASSERT_NE(zone, nullptr);
    EXPECT_EQ(accessibleName(zone), "Drop folders here");
    EXPECT_GT(zone->implicitHeight(), 0);
}

TEST_F(Components, segmentsGoAlongWithTheArrowKeysAndStopAtTheEnds) {
    auto* control = make(R"(SegmentedControl {
        name: "How"; value: "b"; onChosen: value => this.value = value
        options: [{value: "a", title: "A"}, {value: "b", title: "B"}, {value: "c", title: "C"}] })");
    ASSERT_NE(control, nullptr);
    control->forceActiveFocus();
    const std::pair<int, const char*> moves[] = {{Qt::Key_Right, "c"},
                                                 {Qt::Key_Right, "c"},
                                                 {Qt::Key_Left, "b"},
                                                 {Qt::Key_Left, "a"},
                                                 {Qt::Key_Left, "a"}};
    for (const auto& [key, value] : moves) {
        press(key);
        EXPECT_EQ(control->property("value").toString(), value);
    }
}

TEST_F(Components, aComboKeepsItsChoiceWhenTheOptionsAreToldAnew) {
    auto* combo = make(R"(ComboField { value: "b"; onChosen: value => this.value = value
        options: [{value: "a", title: "Apple"}, {value: "b", title: "Pear"}] })");
    ASSERT_NE(combo, nullptr);
    const auto retell = [&](const char* first, const char* second) {
        combo->setProperty("options", QVariantList{QVariantMap{{"value", "a"}, {"title", first}},
                                                   QVariantMap{{"value", "b"}, {"title", second}}});
    };
    EXPECT_EQ(combo->property("displayText").toString(), "Pear");
    retell("Pomme", "Poire");
    EXPECT_EQ(combo->property("displayText").toString(), "Poire");
    EXPECT_EQ(combo->property("currentIndex").toInt(), 1);
    combo->forceActiveFocus();
    press(Qt::Key_Up);
    EXPECT_EQ(combo->property("value").toString(), "a");
    retell("Manzana", "Pera");
    EXPECT_EQ(combo->property("displayText").toString(), "Manzana");
    combo->setProperty("value", "b");
    EXPECT_EQ(combo->property("currentIndex").toInt(), 1);
}

TEST_F(Components, aRowOffersItsActsByRightClickAndByKey) {
    auto* table = make(R"(ListTable {
        width: 600; height: 440; name: "Rows"; model: 3
        property string done
        property int opened: -1
        onOpened: row => opened = row
        delegate: TableRow {
            name: index
            acts: () => [{text: "Not now", enabled: false, act: () => table.done = "no"},
                         {text: "Show", icon: "folder", shortcut: "Ctrl+O", act: () => table.done = "show " + index},
                         {text: "Remove", act: () => table.done = "remove " + index}] }
        id: table })");
    ASSERT_NE(table, nullptr);
    auto* list = table->property("list").value<QQuickItem*>();
    list->forceActiveFocus();
    const auto menuIsOpen = [&] {
        return std::ranges::any_of(shownItems(), [](auto* item) { return accessibleName(item) == "Remove"; });
    };
    const auto done = [&] {
        return table->property("done").toString();
    };
    press(Qt::Key_Down);
    press(Qt::Key_Menu);
    waitUntil("the menu is open", menuIsOpen);
    press(Qt::Key_Return);
    waitUntil("the first act that can be done is done", [&] { return done() == "show 1"; });
    waitUntil("the list has the keyboard again", [&] { return list->hasActiveFocus() && !menuIsOpen(); });

    press(Qt::Key_F10, Qt::ShiftModifier);
    waitUntil("the menu is open", menuIsOpen);
    press(Qt::Key_Escape);
    waitUntil("the list has the keyboard again", [&] { return list->hasActiveFocus() && !menuIsOpen(); });

    auto& quick = window().quickWindow();
    QTest::mouseClick(&quick, Qt::RightButton, Qt::NoModifier, QPoint(40, 10));
    waitUntil("the menu is open", menuIsOpen);
    EXPECT_EQ(list->property("currentIndex").toInt(), 0);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    waitUntil("the act below is done", [&] { return done() == "remove 0"; });
    EXPECT_EQ(table->property("opened").toInt(), -1) << "Return in the menu is not Return in the list";
}

TEST_F(Components, aButtonWithoutWordsSaysWhatItIsForAndTheKeysThatDoTheSame) {
    auto* button = make(R"(IconButton {
        x: 300; y: 300; iconName: "plus"; text: "New thing"; shortcut: "Ctrl+N"
        property int clicks: 0; onClicked: ++clicks })");
    ASSERT_NE(button, nullptr);
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(button->property("clicks").toInt(), 1);
    QTest::mouseMove(&window().quickWindow(), QPoint(310, 310));
    const auto says = [&](const QString& words) {
        return std::ranges::any_of(shownItems(), [&](auto* item) { return item->property("text") == words; });
    };
    waitUntil("it is said", [&] { return says("Ctrl+N"); });
    EXPECT_TRUE(says("New thing"));
    QTest::mouseMove(&window().quickWindow(), QPoint(600, 600));
    waitUntil("it is gone", [&] { return !says("Ctrl+N"); });
    button->setProperty("enabled", false);
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(button->property("clicks").toInt(), 1);
}

TEST_F(Components, aListOfFiftyThousandRowsMakesOnlyThoseInView) {
    auto* table = make(R"(ListTable {
        width: 600; height: 440; name: "Rows"; model: 50000
        delegate: TableRow { name: index } })");
    ASSERT_NE(table, nullptr);
    auto* list = table->property("list").value<QQuickItem*>();
    list->forceActiveFocus();
    const auto rows = [&] {
        return list->property("contentItem").value<QQuickItem*>()->childItems().size();
    };
    waitUntil("rows are there", [&] { return rows() > 5; });
    for (const int key : {Qt::Key_End, Qt::Key_Home, Qt::Key_PageDown, Qt::Key_End})
        press(key);
    EXPECT_EQ(list->property("currentIndex").toInt(), 49999);
    EXPECT_LT(rows(), 200);
}

} // namespace vh::test
