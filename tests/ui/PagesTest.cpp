#include "ui/LayoutFaults.h"
#include "ui/PageStates.h"
#include "ui/WindowFixture.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <tuple>
#include <utility>

namespace vh::test {

namespace {

/// In ms: some heights follow from what is inside a frame later.
constexpr int settling = 30;

using Look = std::tuple<std::string, std::string>; // appearance and language

class Pages : public WindowFixture, public testing::WithParamInterface<Look> {
protected:
    ui::LookOverride look() const {
        const auto& [appearance, language] = GetParam();
        return {QString::fromStdString(appearance), QString::fromStdString(language)};
    }
};

QStringList namelessStops(const std::vector<QQuickItem*>& items) {
    QStringList nameless;
    for (auto* item : items)
        if (item->activeFocusOnTab() && accessibleName(item).isEmpty())
            nameless << QString::fromLatin1(item->metaObject()->className());
    return nameless;
}

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

TEST_P(Pages, standInEveryStateThatAnEmptyHomeHas) {
    fillCaches();
    openWindow(look(), {960, 640});
    int seen = 0;
    for (const auto& page : window().pages())
        for (const auto& state : ui::statesOf(page)) {
            SCOPED_TRACE((page + " " + state).toStdString());
            openPage("home");
            openPage(page);
            if (!showState(state))
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
    EXPECT_GT(seen, 10);
}

TEST_P(Pages, showWhatTheOneButtonWouldDoAndDid) {
    fillCaches();
    openWindow(look(), {960, 640});
    openPage("home");
    QString fault;
    ASSERT_TRUE(QMetaObject::invokeMethod(
        window().app().model("optimize"), "saveProfile", Q_RETURN_ARG(QString, fault),
        Q_ARG(QVariantMap, QVariantMap({{"cleanStorage", true}, {"cleanPrivacy", true}}))));
    ASSERT_EQ(fault, "");
    const auto isAtRest = [&] {
        return window().quickWindow().property("settled").toBool();
    };
    for (const auto* state : {"profile", "check", "last"}) {
        SCOPED_TRACE(state);
        if (state == std::string("last")) {
            QMetaObject::invokeMethod(window().app().model("optimize"), "run");
            waitUntil("it is done", isAtRest);
        }
        ASSERT_TRUE(showState(state));
        waitUntil("all is looked at or done", isAtRest);
        EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
        EXPECT_EQ(namelessStops(shownItems()), QStringList());
        if (state !=
            std::string("last")) { // the run's own words may be longer than the list of recent runs is wide
            EXPECT_EQ(layoutFaults(shownItems()), QStringList());
        }
    }
    EXPECT_EQ(window().app().model("optimize")->property("lastOutcome").toString(), "warning")
        << "one of the two tools is not there yet";
}

TEST_P(Pages, showWhatASyncWouldDoAndDid) {
    for (const auto* folder :
         {"/Photos/Rome", "/Photos/of a journey with a rather long name", "/Backup/Photos"})
        ASSERT_TRUE(QDir().mkpath(QString::fromStdString(home().path()) + QLatin1String(folder)));
    openWindow(look(), {960, 640});
    openPage("sync");
    QString fault;
    ASSERT_TRUE(QMetaObject::invokeMethod(window().app().model("folderSync"), "save",
                                          Q_RETURN_ARG(QString, fault), Q_ARG(QString, QString()),
                                          Q_ARG(QVariantMap, QVariantMap({{"source", "~/Photos"},
                                                                          {"destination", "~/Backup/Photos"},
                                                                          {"deleteExtraneous", true},
                                                                          {"compareContents", true},
                                                                          {"watch", true}}))));
    ASSERT_EQ(fault, "");
    QFile gone(QString::fromStdString(home() / "Backup/Photos/gone"));
    ASSERT_TRUE(gone.open(QIODevice::WriteOnly));
    for (const auto* state : {"chosen", "plan", "confirm", "remove", "form"}) {
        SCOPED_TRACE(state);
        if (state == std::string("confirm"))
            QMetaObject::invokeMethod(window().app().model("folderSync"), "sync");
        else
            ASSERT_TRUE(showState(state));
        waitUntil("it is shown", [&] { return window().quickWindow().property("settled").toBool(); });
        EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
        EXPECT_EQ(layoutFaults(shownItems()), QStringList());
        EXPECT_EQ(namelessStops(shownItems()), QStringList());
    }
    EXPECT_EQ(window().app().model("folderSync")->property("actionCount").toInt(), 3);
    ASSERT_TRUE(QMetaObject::invokeMethod(window().app().model("folderSync"), "approve"));
    waitUntil("it is done", [&] {
        return window().app().model("folderSync")->property("phase") == QLatin1String("finished");
    });
    EXPECT_EQ(layoutFaults(shownItems()), QStringList());
    EXPECT_FALSE(gone.exists());
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
    EXPECT_TRUE(showState("details"));
    EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
}

TEST_P(Pages, showWhatIsCopiedWhereAndWhatCameOfIt) {
    for (const auto* folder : {"Documents/deep", "Archive", "Backup", "Shuttle"})
        ASSERT_TRUE(QDir().mkpath(QString::fromStdString(home() / folder)));
    QFile file(QString::fromStdString(home() / "Documents/deep/some.file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(100'000, 'x'));
    file.close();
    openWindow(look(), {960, 640});
    openPage("fast-copy");
    const auto isAtRest = [&] {
        return window().quickWindow().property("settled").toBool();
    };
    auto* const copying = window().app().model("fastCopy");
    const auto look = [&](const char* what) {
        SCOPED_TRACE(what);
        waitUntil("it is looked at or copied", isAtRest);
        EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
        EXPECT_EQ(layoutFaults(shownItems()), QStringList());
        EXPECT_EQ(namelessStops(shownItems()), QStringList());
    };
    const QDir place(QString::fromStdString(home().path()));
    const QStringList places{place.filePath("Archive"), place.filePath("Backup")};
    QMetaObject::invokeMethod(copying, "addSources",
                              Q_ARG(QStringList, QStringList(place.filePath("Documents"))));
    QMetaObject::invokeMethod(copying, "addDestinations", Q_ARG(QStringList, places));
    look("filled");
    QMetaObject::invokeMethod(copying, "run");
    waitUntil("it is copied", [&] { return !copying->property("isActive").toBool(); });
    look("copied");
    inPage("report.openFor(queue.newest().jobId)");
    look("report");
}

INSTANTIATE_TEST_SUITE_P(
    EveryLook, Pages,
    testing::Combine(testing::Values(std::string("light"), std::string("dark")),
                     testing::Values(std::string("en"), std::string("es"), std::string("fr"))),
    [](const auto& look) { return std::get<0>(look.param) + "_" + std::get<1>(look.param); });

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

TEST_F(Window, showsManyThingsToCopyToManyPlaces) {
    const QDir place(QString::fromStdString(home().path()));
    const QString longName =
        QStringLiteral("a-folder-with-a-name-that-no-row-is-wide-enough-for-").repeated(3);
    QStringList sources, places;
    for (int each = 0; each < 20; ++each)
        sources << place.filePath(longName + QString::number(each));
    for (int each = 0; each < 8; ++each)
        places << place.filePath(QStringLiteral("to/") + longName + QString::number(each));
    for (const QString& each : sources + places)
        ASSERT_TRUE(QDir().mkpath(each));
    openWindow({}, {960, 640});
    openPage("fast-copy");
    auto* const copying = window().app().model("fastCopy");
    const auto choose = [&] {
        QMetaObject::invokeMethod(copying, "addSources", Q_ARG(QStringList, sources));
        QMetaObject::invokeMethod(copying, "addDestinations", Q_ARG(QStringList, places));
        waitUntil("all is looked at", [&] { return !copying->property("isLooking").toBool(); });
    };
    for (int each = 0; each < 10; ++each) {
        choose();
        QMetaObject::invokeMethod(copying, "run");
    }
    choose();
    EXPECT_EQ(copying->property("jobCount").toInt(), 10);
    EXPECT_TRUE(copying->property("canRun").toBool());
    EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
    EXPECT_EQ(layoutFaults(shownItems()), QStringList());
    waitUntil("all is copied", [&] { return !copying->property("isActive").toBool(); });
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
