#include "ui/WindowFixture.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFile>
#include <QTest>

namespace vh::test {

namespace {

/// A flow on its canvas: by hand, on this computer.
class Nodos : public WindowFixture {
protected:
    QObject& editor() { return *window().app().model("flowEditor"); }

    void openNewFlow(const ui::LookOverride& look = {}, QSize size = {1280, 820}) {
        openWindow(look, size);
        openPage("nodos");
        QString made;
        QMetaObject::invokeMethod(window().app().model("flows"), "create", Q_RETURN_ARG(QString, made));
        ASSERT_TRUE(showLook("editor"));
        ASSERT_EQ(editor().property("flowId").toString(), made);
    }

    QAbstractItemModel& model(const char* name) {
        return *editor().property(name).value<QAbstractItemModel*>();
    }
    QString value(const char* name, int row, const QByteArray& role) {
        auto& rows = model(name);
        return rows.index(row, 0).data(rows.roleNames().key(role)).toString();
    }
    QString selected() { return editor().property("selectedNode").toString(); }

    QQuickItem* shown(const QString& name) {
        for (auto* item : shownItems())
            if (accessibleName(item).startsWith(name))
                return item;
        return nullptr;
    }
    QQuickItem* nodeItem(const QString& name) {
        for (auto* item : shownItems())
            if (QByteArray(item->metaObject()->className()).startsWith("NodosNode_") &&
                accessibleName(item).startsWith(name))
                return item;
        return nullptr;
    }
    QPoint middleOf(QQuickItem* item) { return item->mapToScene(item->boundingRect().center()).toPoint(); }
    /// Its ports are there while the mouse is over the node.
    QPoint portOf(QQuickItem* node) {
        QTest::mouseMove(&window().quickWindow(), middleOf(node));
        const QRectF frame = node->boundingRect();
        return node->mapToScene({frame.right() - 2, frame.center().y()}).toPoint();
    }
    void drag(QPoint from, QPoint to) {
        auto* view = &window().quickWindow();
        QTest::mouseMove(view, from);
        QTest::mousePress(view, Qt::LeftButton, {}, from);
        QTest::mouseMove(view, (from + to) / 2);
        QTest::mouseMove(view, to);
        QTest::mouseRelease(view, Qt::LeftButton, {}, to);
    }
    void write(const QString& text) {
        for (const QChar letter : text)
            QTest::keyClick(&window().quickWindow(), letter.toLatin1());
    }
};

} // namespace

TEST_F(Nodos, AFlowIsDrawnFilledInAndTakenBackWithKeysAlone) {
    openNewFlow();
    press(Qt::Key_Right);
    EXPECT_TRUE(accessibleName(focused()).startsWith("By hand")) << "the node has the keyboard";
    press(Qt::Key_Right);
    press(Qt::Key_N);
    waitUntil("the menu has the keyboard", [&] {
        return accessibleName(focused()) == "Tool" || accessibleName(focused()) == "Computer" ||
               accessibleName(focused()) == "Add";
    });
    press(Qt::Key_End);
    for (int i = 0; i < 12 && value("nodes", 2, "kind").isEmpty(); ++i)
        press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_EQ(model("nodes").rowCount(), 3);
    ASSERT_EQ(model("edges").rowCount(), 2) << "it is joined to the node before";
    waitUntil("the canvas has the keyboard again",
              [&] { return accessibleName(focused()).startsWith(value("nodes", 2, "title")); });

    press(Qt::Key_E);
    press(Qt::Key_Space);
    EXPECT_EQ(value("edges", 1, "condition"), "success");
    press(Qt::Key_Right);
    const auto before = value("nodes", 2, "nodeX").toInt();
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(value("nodes", 2, "nodeX").toInt(), before + 20);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(value("nodes", 2, "nodeX").toInt(), before);

    press(Qt::Key_C);
    press(Qt::Key_Left);
    EXPECT_NE(editor().property("connectFault").toString(), "") << "it would go round in a circle";
    press(Qt::Key_Escape);
    EXPECT_EQ(editor().property("connectFrom").toString(), "");
    press(Qt::Key_Delete);
    EXPECT_EQ(model("nodes").rowCount(), 2);
    press(Qt::Key_Escape);
    press(Qt::Key_Escape);
    EXPECT_FALSE(editor().property("isOpen").toBool());
}

TEST_F(Nodos, AnEdgeIsDrawnWithTheMouseAndAFieldTypedInto) {
    openNewFlow();
    QMetaObject::invokeMethod(&editor(), "addAt", Q_ARG(QString, "notify"), Q_ARG(double, 380),
                              Q_ARG(double, 400));
    waitUntil("the new node is shown", [&] { return nodeItem("Notification") != nullptr; });
    drag(portOf(nodeItem("This computer")), middleOf(nodeItem("Notification")));
    ASSERT_EQ(model("edges").rowCount(), 2);
    drag(portOf(nodeItem("Notification")), middleOf(nodeItem("This computer")));
    EXPECT_EQ(model("edges").rowCount(), 2) << "no circle";

    auto* node = nodeItem("Notification");
    const auto at = middleOf(node);
    drag(at, at + QPoint(85, 0));
    EXPECT_EQ(value("nodes", 2, "nodeX").toInt(), 460);
    press(Qt::Key_Return);
    write("Done");
    EXPECT_EQ(value("fields", 0, "value"), "Done");
    auto* chip = shown("Insert date");
    ASSERT_NE(chip, nullptr);
    QTest::mouseClick(&window().quickWindow(), Qt::LeftButton, {}, middleOf(chip));
    write("x");
    EXPECT_EQ(value("fields", 0, "value"), "Done{date}x") << "at the cursor, which goes on behind it";
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
}

TEST_F(Nodos, TheDetailsFoldAwayAndComeBackByKey) {
    openNewFlow({}, {800, 500});
    EXPECT_EQ(shown("Name"), nullptr) << "a small window leaves its room to the canvas";
    press(Qt::Key_I);
    waitUntil("they are there", [&] { return shown("Name") != nullptr; });
    EXPECT_EQ(editor().property("inspectorStanding").toString(), "unfolded");
    press(Qt::Key_I);
    EXPECT_EQ(shown("Name"), nullptr);
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    waitUntil("what is to be filled in has the keyboard", [&] {
        return focused() && !QByteArray(focused()->metaObject()->className()).startsWith("NodosNode_");
    });
    EXPECT_EQ(editor().property("inspectorStanding").toString(), "unfolded");
}

TEST_F(Nodos, TheBarsOfTheCanvasLeaveEachOtherRoom) {
    openNewFlow({.appearance = {}, .language = "fr"}, {800, 500});
    editor().setProperty("inspectorStanding", "unfolded");
    const auto frame = [](QQuickItem* item) {
        return item->mapRectToScene(item->boundingRect());
    };
    std::vector<QQuickItem*> buttons;
    for (const char* name : {"Ajouter", "Annuler", "Rétablir", "Réduire", "Agrandir", "Voir tout le flux"}) {
        buttons.push_back(shown(QString::fromUtf8(name)));
        ASSERT_NE(buttons.back(), nullptr) << name;
        for (size_t other = 0; other + 1 < buttons.size(); ++other)
            EXPECT_FALSE(frame(buttons.back()).intersects(frame(buttons[other]))) << name << ' ' << other;
    }
}

TEST_F(Nodos, ANodeAndTheGroundOfferTheirActs) {
    openNewFlow();
    auto* view = &window().quickWindow();
    waitUntil("the nodes are shown", [&] { return nodeItem("This computer") != nullptr; });
    const auto at = middleOf(nodeItem("This computer"));
    QTest::mouseClick(view, Qt::RightButton, {}, at);
    waitUntil("the menu is open", [&] { return shown("Join to another node") != nullptr; });
    EXPECT_EQ(selected(), value("nodes", 1, "nodeId"));
    QTest::mouseClick(view, Qt::LeftButton, {}, middleOf(shown("Duplicate")));
    waitUntil("there are two", [&] { return model("nodes").rowCount() == 3; });
    press(Qt::Key_Menu);
    waitUntil("the menu is open", [&] { return shown("Delete") != nullptr; });
    QTest::mouseClick(view, Qt::LeftButton, {}, middleOf(shown("Delete")));
    waitUntil("it is gone", [&] { return model("nodes").rowCount() == 2; });
    QTest::mouseClick(view, Qt::RightButton, {}, at + QPoint(0, 150));
    waitUntil("the menu is open", [&] { return shown("Add a node here") != nullptr; });
    EXPECT_EQ(selected(), "");
}

TEST_F(Nodos, ADoubleClickOnTheGroundAddsThereByKeys) {
    openNewFlow({}, {800, 500});
    waitUntil("the nodes are shown", [&] { return nodeItem("This computer") != nullptr; });
    auto* view = &window().quickWindow();
    const auto at = middleOf(nodeItem("This computer")) + QPoint(0, 120);
    QTest::mouseClick(view, Qt::LeftButton, {}, at);
    QTest::mouseDClick(view, Qt::LeftButton, {}, at);
    waitUntil("the menu has the keyboard", [&] { return accessibleName(focused()) == "Computer"; });
    for (auto* item : shownItems()) {
        if (accessibleName(item) == "Computer") {
            EXPECT_LE(item->mapRectToScene(item->boundingRect()).bottom(), 500);
        }
    }
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    waitUntil("it is added", [&] { return model("nodes").rowCount() == 3; });
    EXPECT_EQ(model("edges").rowCount(), 1) << "by itself";
}

} // namespace vh::test
