#include "Platform/Files.h"
#include "ui/WindowFixture.h"

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
    waitUntil("it is known why", [&] { return copying->property("hindrance").toString() != ""; });
    const QString reason = copying->property("hindrance").toString();
    bool isSaid = false;
    for (auto* item : shownItems()) {
        const QString text = item->property("text").toString();
        isSaid = isSaid || text == reason;
        if (text != "" && reason.contains(text) && !reason.startsWith(text))
            EXPECT_FALSE(item->property("truncated").toBool()) << text.toStdString();
        if (text == reason) {
            EXPECT_FALSE(item->property("truncated").toBool());
            EXPECT_LE(item->mapRectToScene(item->boundingRect()).bottom(), 500);
            EXPECT_LE(item->property("contentHeight").toDouble(), item->height());
        }
    }
    EXPECT_TRUE(isSaid);
}

} // namespace vh::test
