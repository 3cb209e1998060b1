#include "Core/Texts.h"

#include "Core/EmbeddedTexts.h"
#include "Core/JsonView.h"
#include "Platform/Host.h"

#include <algorithm>
#include <memory>
#include <unicode/locid.h>
#include <unicode/msgfmt.h>
#include <unicode/strenum.h>
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

struct Arguments {
    explicit Arguments(const std::vector<TextArgument>& arguments) {
        for (const auto& argument : arguments) {
            names.push_back(unicode(argument.name));
            values.push_back(formattable(argument.value));
        }
    }
    bool has(const icu::UnicodeString& name) const { return std::ranges::find(names, name) != names.end(); }

    std::vector<icu::UnicodeString> names;
    std::vector<icu::Formattable> values;
};

/// A pattern that was read: reading takes twenty times as long as filling in.
struct ReadPattern {
    ReadPattern(Language language, const std::string& pattern)
        : format(unicode(pattern), icu::Locale(std::string(code(language)).c_str()), status) {
        const std::unique_ptr<icu::StringEnumeration> wanted(format.getFormatNames(status));
        if (U_FAILURE(status) || !wanted)
            return;
        while (const icu::UnicodeString* name = wanted->snext(status))
            names.push_back(*name);
    }

    UErrorCode status = U_ZERO_ERROR;
    icu::MessageFormat format;
    std::vector<icu::UnicodeString> names;
};

/// Of a text of the program, read once by each thread that words it.
const ReadPattern& readPattern(Language language, const std::string& pattern) {
    thread_local std::unordered_map<const std::string*, ReadPattern> known;
    return known.try_emplace(&pattern, language, pattern).first->second;
}

std::optional<std::string> fill(const ReadPattern& read, const Arguments& arguments) {
    icu::UnicodeString message;
    UErrorCode status = read.status;
    read.format.format(arguments.names.data(), arguments.values.data(),
                       static_cast<int32_t>(arguments.names.size()), message, status);
    if (U_FAILURE(status))
        return std::nullopt;
    std::string text;
    message.toUTF8String(text);
    return text;
}

struct Found {
    const std::string* pattern;
    Language language;
};

/// English stands in for what `language` lacks.
Found patternFor(Language language, std::string_view key) {
    if (const std::string* own = textPattern(language, key))
        return {own, language};
    return {textPattern(Language::en, key), Language::en};
}

} // namespace

const std::string* textPattern(Language language, std::string_view key) {
    const auto& patterns = patternsOf(language);
    const auto found = patterns.find(key);
    return found == patterns.end() ? nullptr : &found->second;
}

std::string formatText(Language language, const std::string& pattern,
                       const std::vector<TextArgument>& arguments) {
    // Showing the pattern tells more than failing over a text would.
    return fill(ReadPattern(language, pattern), Arguments(arguments)).value_or(pattern);
}

Texts Texts::ofSetting(std::string_view setting) {
    return Texts(chosenLanguage(setting, preferredLanguage()));
}

std::string Texts::text(std::string_view key, const std::vector<TextArgument>& arguments) const {
    const auto [pattern, language] = patternFor(language_, key);
    if (!pattern)
        return std::string(key);
    // Most texts have no arguments and need no parsing.
    if (pattern->find('{') == std::string::npos)
        return *pattern;
    return fill(readPattern(language, *pattern), Arguments(arguments)).value_or(*pattern);
}

std::optional<std::string> Texts::find(std::string_view key,
                                       const std::vector<TextArgument>& arguments) const {
    const auto [pattern, language] = patternFor(language_, key);
    if (!pattern || pattern->find('{') == std::string::npos)
        return pattern ? std::optional(*pattern) : std::nullopt;
    const ReadPattern& read = readPattern(language, *pattern);
    const Arguments given(arguments);
    const auto isGiven = [&](const icu::UnicodeString& name) {
        return given.has(name);
    };
    return std::ranges::all_of(read.names, isGiven) ? fill(read, given) : std::nullopt;
}

bool Texts::has(std::string_view key) const {
    return textPattern(language_, key) || textPattern(Language::en, key);
}

} // namespace vh
