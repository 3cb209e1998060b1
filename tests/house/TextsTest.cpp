#include "Core/Codec.h"
#include "Core/Language.h"
#include "Core/ToolCatalog.h"
#include "house/SourceFiles.h"
#include "house/TextRules.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <regex>

namespace vh::house {
namespace {

using Keys = std::map<std::string, std::string>;

/// The patterns of one language by key, as the files hold them.
Keys patternsOf(Language language) {
    Keys patterns;
    const std::string folder = fmt::format("strings/{}/", code(language));
    for (const char* root : {"resources", "src"})
        for (const auto& file : filesUnder(root, {".json"})) {
            if (file.path.find(folder) == std::string::npos)
                continue;
            for (const auto& [key, pattern] : decodeJson<Keys>(file.text))
                EXPECT_TRUE(patterns.emplace(key, pattern).second)
                    << key << " stands twice in " << code(language);
        }
    return patterns;
}

/// Keys whose English is the catalogue itself.
std::set<std::string> catalogueKeys() {
    std::set<std::string> keys;
    for (const auto& tool : ToolCatalog::all())
        for (auto field : {"name", "summary"})
            keys.insert(fmt::format("tool.{}.{}", tool.id, field));
    for (ToolSection section : allCases<ToolSection>())
        for (auto field : {"title", "subtitle"})
            keys.insert(fmt::format("section.{}.{}", rawValue(section), field));
    for (ToolComplexity complexity : allCases<ToolComplexity>())
        keys.insert(fmt::format("complexity.{}", rawValue(complexity)));
    return keys;
}

KeyUse readSources() {
    KeyUse use;
    for (const auto& file : filesUnder("src", {".h", ".cpp", ".mm", ".qml", ".js"}))
        use.read(file.path, file.text);
    return use;
}

TEST(TextRules, FindArgumentsAndKeysInUse) {
    EXPECT_THAT(argumentNames("{count, plural, one {# of {place}} other {{bytes}}}"),
                testing::UnorderedElementsAre("count", "place", "bytes"));
    EXPECT_THROW(argumentNames("{count, plural, one {#}}"), std::runtime_error);
    EXPECT_THROW(argumentNames("{open"), std::runtime_error);
    EXPECT_THROW(argumentNames("{0}"), std::runtime_error);

    KeyUse use;
    use.read(
        "a.qml",
        "label: Tr.t(busy ? 'cache.stop' : \"cache.scan\", {count: \"x.y\"}) + Tr.t(\"cache.kind.\" + k)");
    use.read("b.cpp",
             "tr.text(fmt::format(\"run.{}.title\", id)); set(\"app.language\"); // it's\nmap(\"core.map\")");
    EXPECT_THAT(use.askedKeys,
                testing::UnorderedElementsAre(testing::Key("cache.stop"), testing::Key("cache.scan")));
    EXPECT_THAT(use.askedPrefixes,
                testing::UnorderedElementsAre(testing::Key("cache.kind."), testing::Key("run.")));
    EXPECT_TRUE(use.uses("cache.kind.logs"));
    EXPECT_TRUE(use.uses("core.map"));
    EXPECT_FALSE(use.uses("cache.title"));
}

TEST(Texts, EveryLanguageHasTheSameKeysWithTheSameArguments) {
    const auto english = patternsOf(Language::en);
    const auto fromCatalogue = catalogueKeys();
    for (Language language : {Language::es, Language::fr}) {
        const auto patterns = patternsOf(language);
        for (const auto& key : fromCatalogue)
            EXPECT_TRUE(patterns.contains(key)) << key << " is missing in " << code(language);
        for (const auto& [key, pattern] : english) {
            const auto found = patterns.find(key);
            if (found == patterns.end())
                ADD_FAILURE() << key << " is missing in " << code(language);
            else
                EXPECT_EQ(argumentNames(found->second), argumentNames(pattern))
                    << key << " in " << code(language);
        }
        for (const auto& [key, pattern] : patterns)
            EXPECT_TRUE(english.contains(key) || fromCatalogue.contains(key))
                << key << " is missing in English";
    }
}

TEST(Texts, PatternsCanBeReadAndQuoteNothing) {
    for (Language language : allLanguages)
        for (const auto& [key, pattern] : patternsOf(language)) {
            EXPECT_NO_THROW(argumentNames(pattern)) << key << " in " << code(language);
            EXPECT_TRUE(pattern.find('{') == std::string::npos || pattern.find('\'') == std::string::npos)
                << key << " in " << code(language)
                << ": a straight apostrophe quotes what follows in a pattern with arguments; write \u2019";
            EXPECT_FALSE(pattern.empty()) << key << " in " << code(language);
        }
}

TEST(Texts, EveryKeyIsUsedAndEveryUsedKeyExists) {
    const auto english = patternsOf(Language::en);
    const auto use = readSources();
    for (const auto& [key, pattern] : english)
        EXPECT_TRUE(use.uses(key)) << key << " is used nowhere";
    for (const auto& [key, path] : use.askedKeys)
        EXPECT_TRUE(english.contains(key)) << path << " asks for " << key;
    const auto begins = [](const Keys& keys, const std::string& prefix) {
        const auto first = keys.lower_bound(prefix);
        return first != keys.end() && first->first.starts_with(prefix);
    };
    for (const auto& [prefix, path] : use.askedPrefixes)
        EXPECT_TRUE(begins(english, prefix)) << path << " asks for " << prefix << "…";
}

TEST(Texts, RefusalsOfTheLowestFloorAreStillSaidThere) {
    std::string floor, table;
    for (const auto& file : filesUnder("src/Platform", {".cpp"}))
        floor += file.text;
    for (const auto& file : filesUnder("src/Core", {"ErrorMessage.cpp"}))
        table += file.text;
    const std::regex row(R"re(RefusalRow\{"([^"]+)",)re");
    int seen = 0;
    for (std::sregex_iterator each(table.begin(), table.end(), row), end; each != end; ++each, ++seen)
        EXPECT_NE(floor.find('"' + each->str(1) + '"'), std::string::npos) << each->str(1);
    EXPECT_GE(seen, 5);
}

} // namespace
} // namespace vh::house
