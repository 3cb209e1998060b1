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

} // namespace vh::test
