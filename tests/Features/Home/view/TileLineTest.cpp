#include "Features/Home/view/TileLine.h"

#include "Core/ToolCatalog.h"
#include "Core/ToolTexts.h"
#include "support/view/Desk.h"

namespace vh::app::test {
namespace {

TEST(TileLine, TakesASentenceOrAClause) {
    const std::pair<const char*, const char*> cases[] = {
        {"12:00 · Moved 2 items to the Trash, 6 MB.", "12:00 · Moved 2 items to the Trash, 6 MB."},
        {"One. Two.", "One."},
        {"What fills a disk or folder, by folder or by kind of file, and a smart analysis of what can go: "
         "all.",
         "What fills a disk or folder, by folder or by kind of file"},
        {"Detects partitions of many kinds by their signature and mounts what is supported — limits are "
         "stated "
         "here.",
         "Detects partitions of many kinds by their signature and mounts what is supported"},
        {"Regular expressions and what files know (dimensions of photographs, tags of sound and of film), "
         "seen "
         "live.",
         "Regular expressions and what files know"},
    };
    for (const auto& [text, line] : cases)
        EXPECT_EQ(tileLine(QString::fromUtf8(text)).toStdString(), line);
}

TEST(TileLine, HasRoomForEveryToolInEveryLanguage) {
    for (const Language language : {Language::en, Language::es, Language::fr})
        for (const std::string_view tool : ToolCatalog::mainTools()) {
            const QString line = tileLine(qtText(toolSummary(Texts(language), tool)));
            EXPECT_LE(line.size(), 90) << line.toStdString();
            EXPECT_GE(line.size(), 20) << line.toStdString();
        }
}

} // namespace
} // namespace vh::app::test
