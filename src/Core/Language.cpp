#include "Core/Language.h"

#include "Core/Fold.h"

namespace vh {

std::string_view code(Language language) {
    switch (language) {
    case Language::en:
        return "en";
    case Language::es:
        return "es";
    case Language::fr:
        return "fr";
    }
    return "en";
}

std::optional<Language> languageOfTag(std::string_view tag) {
    const std::string primary = foldCase(tag.substr(0, tag.find_first_of("-_.@")));
    for (Language language : allLanguages)
        if (primary == code(language))
            return language;
    return std::nullopt;
}

Language chosenLanguage(std::string_view setting, std::string_view systemTag) {
    if (auto language = languageOfTag(setting))
        return *language;
    return languageOfTag(systemTag).value_or(Language::en);
}

} // namespace vh
