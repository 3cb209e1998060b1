#include "ui/WindowFixture.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QTest>
#include <algorithm>

namespace vh::test {

namespace {

class CachePage : public WindowFixture {
protected:
    bool isShown(const QString& name) {
        return std::ranges::any_of(shownItems(), [&](auto* item) { return accessibleName(item) == name; });
    }
};

} // namespace

TEST_F(CachePage, hidesWhatHasNothingToDoAndBringsItBack) {
    openWindow();
    openPage("system-junk");
    waitUntil("it was looked for junk", [&] { return isShown("Nothing to clean"); });
    for (const char* idle : {"Select all", "Review and clean", "To the Trash", "All"})
        EXPECT_FALSE(isShown(idle)) << idle;

    fillCaches();
    press(Qt::Key_F5);
    waitUntil("something can go", [&] { return junk().property("itemCount").toInt() == 3; });
    waitUntil("it is offered", [&] { return isShown("Select all") && isShown("Review and clean"); });
    junk().setProperty("search", "nothing is called so");
    waitUntil("nothing matches", [&] { return isShown("No item matches"); });
    EXPECT_TRUE(isShown("Review and clean")) << "there is something, only not shown";
}

TEST_F(CachePage, whatWentComesBackByItsKey) {
    fillCaches();
    openWindow();
    openPage("system-junk");
    waitUntil("something can go", [&] { return junk().property("itemCount").toInt() == 3; });
    tabTo("Select all");
    press(Qt::Key_Space);
    ASSERT_EQ(junk().property("selectedCount").toInt(), 3);
    press(Qt::Key_R, Qt::ControlModifier);
    waitUntil("it is asked", [&] { return isShown("Move to the Trash"); });
    press(Qt::Key_Return);
    waitUntil("it went", [&] { return junk().property("canUndo").toBool(); });
    press(Qt::Key_Z, Qt::ControlModifier);
    waitUntil("it is back", [&] { return QFile::exists(QString::fromStdString(home() / ".cache/large")); });
}

TEST_F(CachePage, anItemOffersItsActs) {
    fillCaches();
    openWindow();
    openPage("system-junk");
    tabTo("Select all");
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    ASSERT_EQ(junk().property("selectedCount").toInt(), 1);
    press(Qt::Key_Menu);
    waitUntil("the menu is open", [&] { return isShown("Take out of the selection"); });
    press(Qt::Key_Return);
    waitUntil("it is no longer selected", [&] { return junk().property("selectedCount").toInt() == 0; });
    press(Qt::Key_Menu);
    waitUntil("the menu is open", [&] { return isShown("Copy path"); });
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    waitUntil("its path is in the clipboard",
              [] { return QGuiApplication::clipboard()->text() == "~/.cache/large"; });
}

} // namespace vh::test
