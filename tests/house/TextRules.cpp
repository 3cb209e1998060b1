#include "house/TextRules.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <stdexcept>
#include <unicode/messagepattern.h>

namespace vh::house {

namespace {

bool isWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

/// "cache.title" or "cache.kind." but no sentence, path or number.
bool looksDotted(std::string_view text) {
    const bool isPlain =
        std::ranges::all_of(text, [](char c) { return isWordCharacter(c) || c == '.' || c == '-'; });
    return isPlain && text.size() > 2 && std::islower(static_cast<unsigned char>(text[0])) &&
           text.find('.') != std::string_view::npos;
}

struct Literal {
    std::string_view text;
    size_t end; ///< just behind the closing quote
};

/// The literal whose opening quote stands at `start`; nothing when its line ends first.
std::optional<Literal> literalAt(std::string_view source, size_t start) {
    const char quote = source[start];
    for (size_t i = start + 1; i < source.size() && source[i] != '\n'; ++i) {
        if (source[i] == '\\')
            ++i;
        else if (source[i] == quote)
            return Literal{source.substr(start + 1, i - start - 1), i + 1};
    }
    return std::nullopt;
}

/// True when the parenthesis at `open` begins the arguments of text or t.
bool asksForText(std::string_view source, size_t open) {
    size_t begin = open;
    while (begin > 0 && isWordCharacter(source[begin - 1]))
        --begin;
    const auto name = source.substr(begin, open - begin);
    return name == "text" || name == "t";
}

std::string prefixOf(std::string_view literal) {
    const auto beginning = literal.substr(0, std::min(literal.find("{}"), literal.find('%')));
    return beginning.ends_with('.') && looksDotted(beginning) ? std::string(beginning) : std::string();
}

} // namespace

std::set<std::string> argumentNames(const std::string& pattern) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError place;
    const auto text = icu::UnicodeString::fromUTF8(pattern);
    const icu::MessagePattern parsed(text, &place, status);
    if (U_FAILURE(status))
        throw std::runtime_error(u_errorName(status));
    std::set<std::string> names;
    for (int32_t i = 0; i < parsed.countParts(); ++i) {
        const auto& part = parsed.getPart(i);
        if (part.getType() == UMSGPAT_PART_TYPE_ARG_NUMBER)
            throw std::runtime_error("an argument has a number instead of a name");
        std::string name;
        if (part.getType() == UMSGPAT_PART_TYPE_ARG_NAME)
            names.insert(parsed.getSubstring(part).toUTF8String(name));
    }
    return names;
}

void KeyUse::read(std::string_view path, std::string_view source) {
    int depth = 0;
    int callDepth = 0; // that of the first argument of a call, 0 outside of one
    for (size_t i = 0; i < source.size(); ++i) {
        const char c = source[i];
        if (c == '(' || c == '{' || c == '[') {
            ++depth;
            if (c == '(' && asksForText(source, i))
                callDepth = depth;
        } else if (c == ')' || c == '}' || c == ']' || c == ',') {
            if (callDepth == depth)
                callDepth = 0;
            depth -= c == ',' ? 0 : 1;
        } else if (c == '"' || c == '\'') {
            const auto literal = literalAt(source, i);
            if (!literal)
                continue;
            i = literal->end - 1;
            note(literal->text, callDepth > 0, path);
        }
    }
}

void KeyUse::note(std::string_view literal, bool isAsked, std::string_view path) {
    literals.emplace(literal);
    const std::string prefix = prefixOf(literal);
    if (!prefix.empty())
        prefixes.insert(prefix);
    if (isAsked && !prefix.empty())
        askedPrefixes.emplace(prefix, path);
    else if (isAsked && looksDotted(literal))
        askedKeys.emplace(literal, path);
}

bool KeyUse::uses(std::string_view key) const {
    return literals.contains(key) ||
           std::ranges::any_of(prefixes, [&](const std::string& prefix) { return key.starts_with(prefix); });
}

} // namespace vh::house
