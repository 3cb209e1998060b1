#include "ui/WindowFixture.h"

#include <QFile>
#include <QGuiApplication>
#include <set>

namespace vh::test {

namespace {

class Keyboard : public WindowFixture {
protected:
    void openCachePage() {
        fillCaches();
        openWindow();
        openPage("system-junk");
        ASSERT_EQ(junk().property("itemCount").toInt(), 3);
    }

    QString page() { return window().quickWindow().property("page").toString(); }
    QString stage() { return junk().property("stage").toString(); }
    int selectedCount() { return junk().property("selectedCount").toInt(); }
};

} // namespace

TEST_F(Keyboard, tabReachesEveryControlOfTheCachePage) {
    openCachePage();
    std::set<QQuickItem*> wanted;
    for (auto* item : shownItems())
        if (item->activeFocusOnTab() && item->isEnabled())
            wanted.insert(item);
    ASSERT_GE(wanted.size(), 8u);

    std::set<QQuickItem*> reached;
    for (size_t i = 0; i < 2 * wanted.size(); ++i) {
        press(Qt::Key_Tab);
        for (auto* item = focused(); item; item = item->parentItem())
            reached.insert(item); // a list hands the keyboard on to its row
    }
    for (auto* item : wanted)
        EXPECT_TRUE(reached.contains(item))
            << accessibleName(item).toStdString() << " is not reached, a " << item->metaObject()->className();
}

TEST_F(Keyboard, aRowIsChosenWithSpaceAndReviewedWithReturn) {
    openCachePage();
    tabTo("large, ");
    press(Qt::Key_Space);
    EXPECT_EQ(selectedCount(), 1);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_EQ(selectedCount(), 2);
    press(Qt::Key_Up);
    press(Qt::Key_Space);
    EXPECT_EQ(selectedCount(), 1);
    press(Qt::Key_Return);
    EXPECT_EQ(stage(), "review");
}

TEST_F(Keyboard, theReviewKeepsTheKeyboardAndEscapeClosesItWithNothingRemoved) {
    openCachePage();
    tabTo("large, ");
    for (const auto* method : {"trash", "permanent"}) {
        SCOPED_TRACE(method);
        junk().setProperty("method", method);
        if (selectedCount() == 0)
            QMetaObject::invokeMethod(&junk(), "toggleSelectAll");
        QMetaObject::invokeMethod(&junk(), "review");
        const bool forGood = std::string(method) == "permanent";
        waitUntil("the sheet has the keyboard",
                  [&] { return focusedName() == (forGood ? "Cancel" : "Move to the Trash"); });
        std::set<QString> names;
        for (int i = 0; i < 6; ++i) {
            press(Qt::Key_Tab);
            names.insert(focusedName());
        }
        EXPECT_TRUE(names.contains("Cancel"));
        EXPECT_FALSE(names.contains("Scan again")) << "the keyboard left the sheet";
        press(Qt::Key_Escape);
        EXPECT_EQ(stage(), "scanned");
        waitUntil("the row has the keyboard again", [&] { return focusedName().startsWith("large, "); });
    }
    EXPECT_EQ(junk().property("itemCount").toInt(), 3);
}

TEST_F(Keyboard, choosesAFolderWithoutTheMouse) {
    openWindow();
    openPage("settings");
    tabTo("Move…");
    press(Qt::Key_Return);
    tabTo("Choose…");
    press(Qt::Key_Return);
    EXPECT_EQ(window().app().folderUrl("~/tmp").toLocalFile().toStdString(), home() / "tmp");
    EXPECT_EQ(window().app().folderUrl("~/not there").toLocalFile().toStdString(), home().path());
    waitUntil("the dialog has the keyboard", [&] {
        return focusedName() != "Choose…" || QGuiApplication::focusWindow() != &window().quickWindow();
    });
}

TEST_F(Keyboard, goesFromPageToPageAndBack) {
    openWindow();
    openPage("home");
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(page(), "activity");
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(page(), "settings");
    press(Qt::Key_Escape);
    EXPECT_EQ(page(), "activity");
    press(Qt::Key_Escape);
    EXPECT_EQ(page(), "home");
    press(Qt::Key_Escape);
    EXPECT_EQ(page(), "home");
}

TEST_F(Keyboard, worksTheSidebarWithArrowKeys) {
    openWindow();
    openPage("home");
    tabTo("Home");
    press(Qt::Key_Down);
    EXPECT_EQ(focusedName(), "Activity");
    press(Qt::Key_Return);
    EXPECT_EQ(page(), "activity");
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(focusedName(), "Home");
}

TEST_F(Keyboard, findsAToolFromTheSearchField) {
    openWindow();
    openPage("home");
    press(Qt::Key_F, Qt::ControlModifier);
    for (const auto key : {Qt::Key_C, Qt::Key_A, Qt::Key_C, Qt::Key_H, Qt::Key_E})
        press(key);
    press(Qt::Key_Return);
    EXPECT_EQ(page(), "system-junk");
    waitUntil("the page has come to rest", [&] { return !junk().property("isScanning").toBool(); });
    EXPECT_EQ(focusedName(), "Scan again") << "the page that was found has the keyboard";

    press(Qt::Key_K, Qt::ControlModifier);
    press(Qt::Key_S);
    press(Qt::Key_Escape);
    EXPECT_EQ(page(), "system-junk") << "Escape empties the field before it goes back";
}

TEST_F(Keyboard, theOneButtonIsSetAskedAndPressedWithoutAPointer) {
    fillCaches();
    openWindow();
    openPage("home");
    auto* optimize = window().app().model("optimize");
    QMetaObject::invokeMethod(optimize, "saveProfile",
                              Q_ARG(QVariantMap, QVariantMap({{"cleanStorage", false}})));
    tabTo("What Optimize does");
    press(Qt::Key_Return);
    waitUntil("the sheet is open", [&] { return focusedName() == "Save"; });
    tabTo("Clean caches");
    press(Qt::Key_Space);
    tabTo("Save");
    press(Qt::Key_Return);
    waitUntil("the profile is kept", [&] { return optimize->property("hasSteps").toBool(); });

    for (const bool goesOn : {false, true}) {
        tabTo("What would it do?");
        press(Qt::Key_Return);
        waitUntil("it is looked at",
                  [&] { return focusedName() == "Close" && !optimize->property("isChecking").toBool(); });
        if (goesOn)
            tabTo("Optimize");
        press(goesOn ? Qt::Key_Return : Qt::Key_Escape);
        waitUntil("the sheet is closed", [&] { return focusedName() == "What would it do?" || goesOn; });
        EXPECT_TRUE(goesOn || !optimize->property("isRunning").toBool());
    }
    waitUntil("it is done", [&] {
        return optimize->property("hasResult").toBool() && optimize->property("canUndo").toBool();
    });
    tabTo("Last run");
    press(Qt::Key_Return);
    waitUntil("the result is shown", [&] { return focusedName() == "Close"; });
    tabTo("Undo");
    press(Qt::Key_Return);
    waitUntil("it is undone", [&] {
        return !optimize->property("canUndo").toBool() && !optimize->property("isUndoing").toBool();
    });
    EXPECT_TRUE(QFile::exists(QString::fromStdString(home() / ".cache/large/data")));
}

} // namespace vh::test
