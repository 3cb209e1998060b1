#include "ui/WindowFixture.h"

#include <QQmlComponent>
#include <QQmlEngine>

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
