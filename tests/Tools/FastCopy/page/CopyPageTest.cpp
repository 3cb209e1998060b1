#include "Platform/Files.h"
#include "ui/EveryLook.h"
#include "ui/LayoutFaults.h"

#include <QDir>
#include <QFile>

namespace vh::test {

using CopyPage = WindowFixture;

TEST_F(CopyPage, takesWhatIsDroppedAndKeepsTheKeyboardWhereTheWorkIs) {
    makeFolders(home() / "from");
    makeFolders(home() / "to");
    writeFileAtomically(home() / "from/file", "text");
    openWindow();
    openPage("fast-copy");
    drop(home() / "from", "Drop what is to be copied");
    drop(home() / "to", "Drop folders to copy it to");
    waitUntil("it can be copied",
              [&] { return window().app().model("fastCopy")->property("canRun").toBool(); });
    tabTo("Clear");
    press(Qt::Key_Tab);
    ASSERT_EQ(focusedName(), "Copy");
    press(Qt::Key_Return);
    waitForFocus("Report on from → to");
    EXPECT_EQ(readFile(home() / "to/from/file"), "text");
    press(Qt::Key_Return);
    waitForFocus("Close");
    press(Qt::Key_Escape);
    waitForFocus("Report on from → to");
}

TEST_F(CopyPage, neverCutsWhyItCannotCopy) {
    const std::string source = home() / "a folder with rather a long name that says what it is for";
    makeFolders(source + "/inside");
    openWindow({.appearance = {}, .language = "fr"}, {800, 500});
    openPage("fast-copy");
    drop(source, "Déposez ce qui doit être copié");
    drop(source + "/inside", "Déposez les dossiers de destination");
    auto* copying = window().app().model("fastCopy");
    waitUntil("it is known why", [&] { return copying->property("blocker").toString() != ""; });
    const QString reason = copying->property("blocker").toString();
    bool isSaid = false;
    for (auto* item : shownItems()) {
        const QString text = item->property("text").toString();
        isSaid = isSaid || text == reason;
        if (text != "" && reason.contains(text) && !reason.startsWith(text)) {
            EXPECT_FALSE(item->property("truncated").toBool()) << text.toStdString();
        }
        if (text == reason) {
            EXPECT_FALSE(item->property("truncated").toBool());
            EXPECT_LE(item->mapRectToScene(item->boundingRect()).bottom(), 500);
            EXPECT_LE(item->property("contentHeight").toDouble(), item->height());
        }
    }
    EXPECT_TRUE(isSaid);
}

TEST_F(CopyPage, showsManyThingsToCopyToManyPlaces) {
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

using CopyPageInEveryLook = EveryLook;

TEST_P(CopyPageInEveryLook, showWhatIsCopiedWhereAndWhatCameOfIt) {
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
    const QStringList places{place.filePath("Archive"), place.filePath("Backup"),
                             place.filePath("A folder that is not there yet and has a long name")};
    QMetaObject::invokeMethod(copying, "addSources",
                              Q_ARG(QStringList, QStringList(place.filePath("Documents"))));
    QMetaObject::invokeMethod(copying, "addDestinations", Q_ARG(QStringList, places));
    look("one place is missing, and why it cannot run is said");
    EXPECT_FALSE(copying->property("canRun").toBool());
    QMetaObject::invokeMethod(copying, "makeDestination", Q_ARG(int, 2));
    waitUntil("the folder is made", [&] { return copying->property("canRun").toBool(); });
    look("filled");
    QMetaObject::invokeMethod(copying, "run");
    waitUntil("it is copied", [&] { return !copying->property("isActive").toBool(); });
    look("copied");
    inPage("report.openFor(queue.newest().jobId)");
    look("report");
}

IN_EVERY_LOOK(CopyPageInEveryLook);

} // namespace vh::test
