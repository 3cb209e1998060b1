#pragma once

#include <string>
#include <string_view>

namespace vh {

/// Case gone by Unicode's rules for comparing, no language's own. Undecodable bytes become U+FFFD.
std::string foldCase(std::string_view text);

/// Case, accents and compatibility forms gone, for searching: "Éclair ﬁn" becomes "eclair fin".
std::string foldForSearch(std::string_view text);

/// True when `text`, folded for searching, contains `foldedNeedle`, which foldForSearch has been through.
bool containsFolded(std::string_view text, std::string_view foldedNeedle);

} // namespace vh
