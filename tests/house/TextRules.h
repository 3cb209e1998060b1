#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace vh::house {

/// The names of all arguments of an ICU message pattern, those inside plurals too. Throws std::runtime_error with the
/// parser's reason for a pattern that is not one.
std::set<std::string> argumentNames(const std::string& pattern);

/// What sources say of text keys, gathered from every string literal in either kind of quotes.
struct KeyUse {
    std::set<std::string, std::less<>> literals;
    std::set<std::string, std::less<>>
        prefixes; ///< literals that end in "." or go on with "{}", up to the point
    /// Literals and prefixes inside a call of text(…) or t(…) and where they stand: these must be keys.
    std::map<std::string, std::string> askedKeys;
    std::map<std::string, std::string> askedPrefixes;

    void read(std::string_view path, std::string_view source);
    bool uses(std::string_view key) const;

private:
    void note(std::string_view literal, bool isAsked, std::string_view path);
};

} // namespace vh::house
