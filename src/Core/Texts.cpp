#include "Core/Texts.h"

#include "Core/EmbeddedTexts.h"
#include "Core/JsonView.h"
#include "Platform/Host.h"

#include <unicode/locid.h>
#include <unicode/msgfmt.h>
#include <unordered_map>

namespace vh {

namespace {

struct KeyHash {
    using is_transparent = void;
    size_t operator()(std::string_view key) const { return std::hash<std::string_view>()(key); }
};
/// Hashed, since all of them are read at the first text that a start asks for.
using Patterns = std::unordered_map<std::string, std::string, KeyHash, std::equal_to<>>;

Patterns parsePatterns(std::string_view language) {
    constexpr size_t expected = 2048;
    Patterns patterns(expected);
    JsonDocument document;
    for (const auto& file : embeddedTexts()) {
        if (file.language != language)
            continue;
        document.parse(file.json).forEachMember(
            [&](std::string_view key, JsonView value) { patterns.emplace(key, value.text().value_or("")); });
    }
    return patterns;
}

/// Parsed when a language is first asked for, so that starting the program costs nothing.
const Patterns& patternsOf(Language language) {
    switch (language) {
    case Language::es: {
        static const Patterns spanish = parsePatterns("es");
        return spanish;
    }
    case Language::fr: {
        static const Patterns french = parsePatterns("fr");
        return french;
    }
    case Language::en:
        break;
    }
    static const Patterns english = parsePatterns("en");
    return english;
}

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

icu::Formattable formattable(const TextValue& argument) {
    struct Visitor {
        icu::Formattable operator()(int64_t number) const { return icu::Formattable(number); }
        icu::Formattable operator()(double number) const { return icu::Formattable(number); }
        icu::Formattable operator()(const std::string& text) const { return icu::Formattable(unicode(text)); }
    };
    return std::visit(Visitor{}, argument.value);
}

} // namespace

const std::string* textPattern(Language language, std::string_view key) {
    const auto& patterns = patternsOf(language);
    const auto found = patterns.find(key);
    return found == patterns.end() ? nullptr : &found->second;
}

std::string formatText(Language language, const std::string& pattern,
                       const std::vector<TextArgument>& arguments) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::MessageFormat format(unicode(pattern), icu::Locale(std::string(code(language)).c_str()),
                                    status);
    std::vector<icu::UnicodeString> names;
    std::vector<icu::Formattable> values;
    for (const auto& argument : arguments) {
        names.push_back(unicode(argument.name));
        values.push_back(formattable(argument.value));
    }
    icu::UnicodeString message;
    format.format(names.data(), values.data(), static_cast<int32_t>(names.size()), message, status);
    // Showing the pattern tells more than failing over a text would.
    if (U_FAILURE(status))
        return pattern;
    std::string text;
    message.toUTF8String(text);
    return text;
}

Texts Texts::ofSetting(std::string_view setting) {
    return Texts(chosenLanguage(setting, preferredLanguage()));
}

std::string Texts::text(std::string_view key, const std::vector<TextArgument>& arguments) const {
    Language language = language_;
    const std::string* pattern = textPattern(language, key);
    if (!pattern) {
        language = Language::en;
        pattern = textPattern(language, key);
    }
    if (!pattern)
        return std::string(key);
    // Most texts have no arguments and need no parsing.
    if (pattern->find('{') == std::string::npos)
        return *pattern;
    return formatText(language, *pattern, arguments);
}

bool Texts::has(std::string_view key) const {
    return textPattern(language_, key) || textPattern(Language::en, key);
}

} // namespace vh
