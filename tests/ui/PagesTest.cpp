#include "ui/EveryLook.h"
#include "ui/LayoutFaults.h"
#include "ui/PageLooks.h"

#include <QTest>
#include <utility>

namespace vh::test {

namespace {

/// In ms: some heights follow from what is inside a frame later.
constexpr int settling = 30;

using Pages = EveryLook;

} // namespace

TEST_P(Pages, cutNothingAndNameEverything) {
    fillCaches();
    openWindow(look(), {960, 640});
    bool absentSeen = false;
    for (const auto& page : window().pages()) {
        // Tools that are not there yet share one page.
        const bool isThere = window().app().pages().contains(page);
        if (!isThere && std::exchange(absentSeen, true))
            continue;
        SCOPED_TRACE(page.toStdString());
        openPage(page);
        for (const QSize size : {QSize(960, 640), QSize(1100, 700), QSize(1600, 1000)}) {
            SCOPED_TRACE(testing::Message() << size.width() << "x" << size.height());
            window().quickWindow().resize(size);
            QTest::qWait(settling);
            EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
            EXPECT_EQ(layoutFaults(shownItems()), QStringList());
            EXPECT_EQ(namelessStops(shownItems()), QStringList());
        }
    }
}

TEST_P(Pages, standInEveryLookThatAnEmptyHomeHas) {
    fillCaches();
    openWindow(look(), {960, 640});
    int seen = 0;
    for (const auto& page : window().app().pages().keys()) {
        openPage(page);
        for (const auto& name : ui::looksOf(window().quickWindow())) {
            SCOPED_TRACE((page + " " + name).toStdString());
            openPage("home");
            openPage(page);
            if (!showLook(name))
                continue; // nothing is there yet to be chosen
            ++seen;
            waitUntil("it is shown", [&] { return window().quickWindow().property("settled").toBool(); });
            for (const QSize size : {QSize(960, 640), QSize(1600, 1000)}) {
                SCOPED_TRACE(testing::Message() << size.width() << "x" << size.height());
                window().quickWindow().resize(size);
                QTest::qWait(settling);
                EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
                EXPECT_EQ(layoutFaults(shownItems()), QStringList());
                EXPECT_EQ(namelessStops(shownItems()), QStringList());
            }
            press(Qt::Key_Escape);
        }
    }
    EXPECT_GT(seen, 10);
}

TEST_P(Pages, showWhatWasDone) {
    fillCaches();
    openWindow(look());
    openPage("system-junk");
    ASSERT_EQ(junk().property("itemCount").toInt(), 3);
    junk().setProperty("method", "permanent");
    ASSERT_TRUE(QMetaObject::invokeMethod(&junk(), "toggleSelectAll"));
    ASSERT_TRUE(QMetaObject::invokeMethod(&junk(), "review"));
    ASSERT_TRUE(QMetaObject::invokeMethod(&junk(), "start"));
    waitUntil("the clean is done", [&] { return junk().property("stage") == QLatin1String("done"); });
    EXPECT_EQ(junk().property("resultOutcome"), QLatin1String("success"));
    for (const auto* page : {"system-junk", "home", "activity"})
        openPage(page);
    waitUntil("the run is listed",
              [&] { return window().app().model("activity")->property("runCount").toInt() == 1; });
    EXPECT_TRUE(showLook("details"));
    EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
}

IN_EVERY_LOOK(Pages);

using Window = WindowFixture;

TEST_F(Window, aPageThatDoesNotExistIsRefusedAndLeavesTheWindowAsItIs) {
    openWindow();
    openPage("settings");
    EXPECT_FALSE(window().open("no-such-page"));
    EXPECT_EQ(window().quickWindow().property("page").toString(), "settings");
    EXPECT_TRUE(window().pages().contains("fast-copy"));
}

TEST_F(Window, aFormerNameOpensTheToolThatTookItOver) {
    openWindow();
    openPage("lan-scanner");
    EXPECT_EQ(window().quickWindow().property("page").toString(), "net-diagnostics");
}

TEST_F(Window, changesItsLanguageWhileItIsOpen) {
    openWindow();
    openPage("settings");
    const auto titleIn = [&](const char* language) {
        window().app().model("settings")->setProperty("language", language);
        return window().quickWindow().title();
    };
    const auto english = titleIn("en");
    EXPECT_NE(titleIn("es"), english);
    EXPECT_NE(titleIn("fr"), titleIn("es"));
    EXPECT_EQ(titleIn("en"), english);
}

} // namespace vh::test
