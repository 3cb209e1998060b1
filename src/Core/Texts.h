#pragma once

#include "Core/Language.h"

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vh {

/// What stands for a named argument of a text: a number, which is written as the language writes numbers and chooses
/// plurals, or a text.
class TextValue {
public:
    template <std::integral T>
    TextValue(T number) : value(static_cast<int64_t>(number)) {}
    TextValue(double number) : value(number) {}
    TextValue(std::string text) : value(std::move(text)) {}
    TextValue(std::string_view text) : value(std::string(text)) {}
    TextValue(const char* text) : value(std::string(text)) {}

    std::variant<int64_t, double, std::string> value;
};

struct TextArgument {
    std::string_view name;
    TextValue value;
};

/// The program's texts in one language, from resources/strings. Cheap to make and to copy; any thread may ask.
class Texts {
public:
    explicit Texts(Language language) : language_(language) {}
    /// In the language of the setting "app.language" on this computer.
    static Texts ofSetting(std::string_view setting);

    Language language() const { return language_; }

    /// The text of a dotted key with its arguments filled in; in English when this language has none, and the key
    /// itself when no language has.
    std::string text(std::string_view key, const std::vector<TextArgument>& arguments = {}) const;
    bool has(std::string_view key) const;
    /// The same, but nothing when no language has the key or its text takes other arguments.
    std::optional<std::string> find(std::string_view key, const std::vector<TextArgument>& arguments) const;

private:
    Language language_;
};

/// Fills the named arguments of an ICU message pattern in. A pattern that cannot be read comes back as it is.
std::string formatText(Language language, const std::string& pattern,
                       const std::vector<TextArgument>& arguments);

/// A text as its file holds it, an ICU message pattern; nothing when `language` lacks the key.
const std::string* textPattern(Language language, std::string_view key);

} // namespace vh
