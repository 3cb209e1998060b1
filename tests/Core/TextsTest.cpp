#include "Core/Texts.h"
#include "Core/ToolTexts.h"

#include "Platform/Host.h"

#include <gtest/gtest.h>
#include <regex>

namespace vh {
namespace {

using enum Language;

TEST(Texts, FillArgumentsInAndChoosePlurals) {
    const std::string items = "{count, plural, =0 {nothing} one {# item} other {# items}} · {bytes}";
    EXPECT_EQ(formatText(en, items, {{"count", 0}, {"bytes", "0 bytes"}}), "nothing · 0 bytes");
    EXPECT_EQ(formatText(en, items, {{"count", 1}, {"bytes", "8 GB"}}), "1 item · 8 GB");
    EXPECT_EQ(formatText(en, items, {{"count", 21'400u}, {"bytes", std::string("{}")}}), "21,400 items · {}");
    EXPECT_EQ(formatText(es, items, {{"count", 21'400}, {"bytes", "8 GB"}}), "21.400 items · 8 GB");
    // French counts one and a half, and zero, as one.
    EXPECT_EQ(formatText(fr, "{n, plural, one {jour} other {jours}}", {{"n", 1.5}}), "jour");
    EXPECT_EQ(formatText(en, "to {place}", {}), "to {place}");
    EXPECT_EQ(formatText(en, "broken {place", {{"place", "x"}}), "broken {place");
    EXPECT_EQ(formatText(en, "{name}", {{"name", "caf\xE9"}}), "caf\xEF\xBF\xBD");
}

TEST(Texts, AnUnknownKeyIsItsOwnText) {
    EXPECT_EQ(Texts(fr).text("no.such.key", {{"count", 3}}), "no.such.key");
    EXPECT_FALSE(Texts(fr).has("no.such.key"));
}

TEST(Texts, ToolsSpeakEveryLanguage) {
    EXPECT_EQ(toolName(Texts(en), "system-junk"), "Cache");
    EXPECT_EQ(toolName(Texts(es), "system-junk"), "Caché");
    EXPECT_EQ(toolName(Texts(fr), "lan-scanner"), "Réseau");
    EXPECT_EQ(toolName(Texts(es), "no-such-tool"), "no-such-tool");
    EXPECT_EQ(toolSummary(Texts(es), "no-such-tool"), "");
    EXPECT_EQ(toolSummary(Texts(en), "shredder"), ToolCatalog::tool("shredder")->summary);
    EXPECT_EQ(sectionTitle(Texts(fr), ToolSection::rescue), "Secours");
    EXPECT_EQ(sectionSubtitle(Texts(en), ToolSection::disks), subtitle(ToolSection::disks));
    EXPECT_EQ(complexityLabel(Texts(es), ToolComplexity::veryHigh), "Muy alta");
}

TEST(Texts, ToolsSpeakOfThisSystem) {
    if (isMacOS())
        GTEST_SKIP() << "there they do";
    const auto expectNone = [](const std::string& text) {
        static const std::regex other(
            "\\bMacs?\\b|macOS|Apple|IOKit|Safari|Time Machine|Spotlight|Launch (Services|Agent)|"
            "LaunchAgents|Finder|FSEvents|APFS|Keychain|plist|TCC|Keynote|Full Disk Access|"
            "Application Support|DMG");
        EXPECT_FALSE(std::regex_search(text, other)) << text;
    };
    for (const Language language : allLanguages) {
        const Texts texts(language);
        for (const ToolDescriptor& tool : ToolCatalog::all()) {
            expectNone(toolName(texts, tool.id));
            expectNone(toolSummary(texts, tool.id));
        }
        for (const ToolSection section : allCases<ToolSection>())
            expectNone(sectionTitle(texts, section) + sectionSubtitle(texts, section));
    }
}

TEST(Language, IsFoundInTagsAndSettings) {
    EXPECT_EQ(languageOfTag("es_ES.UTF-8"), es);
    EXPECT_EQ(languageOfTag("FR-ca"), fr);
    EXPECT_EQ(languageOfTag("est"), std::nullopt);
    EXPECT_EQ(languageOfTag("C"), std::nullopt);
    EXPECT_EQ(chosenLanguage("system", "fr"), fr);
    EXPECT_EQ(chosenLanguage("es", "fr"), es);
    EXPECT_EQ(chosenLanguage("system", "de"), en);
}

} // namespace
} // namespace vh
