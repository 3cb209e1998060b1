#pragma once

#include <string_view>

namespace vh {

/// Without white space and line ends around it.
constexpr std::string_view trimmed(std::string_view text) {
    constexpr std::string_view white = " \t\r\n\v\f";
    const size_t first = text.find_first_not_of(white);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(white) + 1 - first);
}

constexpr bool isBlank(std::string_view text) {
    return trimmed(text).empty();
}

} // namespace vh
