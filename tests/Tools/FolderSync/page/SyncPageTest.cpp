#include "ui/EveryLook.h"
#include "ui/LayoutFaults.h"

#include <QDir>
#include <QFile>

namespace vh::test {

namespace {

using SyncPage = EveryLook;

} // namespace

TEST_P(SyncPage, showWhatASyncWouldDoAndDid) {
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
            ASSERT_TRUE(showLook(state));
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

IN_EVERY_LOOK(SyncPage);

} // namespace vh::test
