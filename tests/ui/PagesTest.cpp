#include "ui/WindowFixture.h"

#include <QDir>
#include <QFile>
#include <map>
#include <tuple>

namespace vh::test {

namespace {

using Look = std::tuple<std::string, std::string>; // appearance and language

class Pages : public WindowFixture, public testing::WithParamInterface<Look> {
protected:
    ui::LookOverride look() const {
        const auto& [appearance, language] = GetParam();
        return {QString::fromStdString(appearance), QString::fromStdString(language)};
    }
};

/// Texts that had to be shortened, although they are the program's own: paths are cut in the middle, on purpose.
QStringList cutTexts(const std::vector<QQuickItem*>& items) {
    constexpr int elideMiddle = Qt::ElideMiddle;
    QStringList cut;
    for (auto* item : items)
        if (item->property("truncated").toBool() && item->property("elide").toInt() != elideMiddle)
            cut << item->property("text").toString();
    return cut;
}

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
    const std::map<QString, QString> states{
        {"home", "all-tools"}, {"schedules", "maintenance"}, {"scripts", "new"}};
    for (const auto& page : window().pages()) {
        SCOPED_TRACE(page.toStdString());
        openPage(page);
        if (const auto state = states.find(page); state != states.end()) {
            EXPECT_TRUE(showState(state->second));
        }
        EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
        EXPECT_EQ(cutTexts(shownItems()), QStringList());
        EXPECT_EQ(namelessStops(shownItems()), QStringList());
    }
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
    for (const auto* state : {"profile", "check", "result"}) {
        SCOPED_TRACE(state);
        ASSERT_TRUE(showState(state));
        waitUntil("all is looked at or done", isAtRest);
        EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
        EXPECT_EQ(namelessStops(shownItems()), QStringList());
        if (state !=
            std::string("result")) { // the run's own words may be longer than the list of recent runs is wide
            EXPECT_EQ(cutTexts(shownItems()), QStringList());
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
        ASSERT_TRUE(showState(state));
        waitUntil("it is shown", [&] { return window().quickWindow().property("settled").toBool(); });
        EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
        EXPECT_EQ(cutTexts(shownItems()), QStringList());
        EXPECT_EQ(namelessStops(shownItems()), QStringList());
    }
    EXPECT_EQ(window().app().model("folderSync")->property("actionCount").toInt(), 3);
    ASSERT_TRUE(QMetaObject::invokeMethod(window().app().model("folderSync"), "approve"));
    waitUntil("it is done", [&] {
        return window().app().model("folderSync")->property("phase") == QLatin1String("finished");
    });
    EXPECT_EQ(cutTexts(shownItems()), QStringList());
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
    for (const auto* state : {"filled", "paused", "report"}) {
        SCOPED_TRACE(state);
        ASSERT_TRUE(showState(state));
        waitUntil("it is looked at or copied", isAtRest);
        EXPECT_FALSE(window().quickWindow().grabWindow().isNull());
        EXPECT_EQ(cutTexts(shownItems()), QStringList());
        EXPECT_EQ(namelessStops(shownItems()), QStringList());
    }
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
    EXPECT_EQ(cutTexts(shownItems()), QStringList());
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
