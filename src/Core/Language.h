#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace vh {

/// The languages the program speaks. English stands in for every other.
enum class Language { en, es, fr };

inline constexpr std::array allLanguages{Language::en, Language::es, Language::fr};

/// "en", "es", "fr": also the names of the folders in resources/strings.
std::string_view code(Language language);

/// From a tag such as "es", "es-MX" or "es_ES.UTF-8"; nothing for a language the program does not speak.
std::optional<Language> languageOfTag(std::string_view tag);

/// What the setting "app.language" means: a code, or "system" for the language of `systemTag`.
Language chosenLanguage(std::string_view setting, std::string_view systemTag);

} // namespace vh
