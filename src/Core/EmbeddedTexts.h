#pragma once

#include <span>
#include <string_view>

namespace vh {

/// One file of resources/strings as it was built in.
struct EmbeddedText {
    std::string_view language; ///< "en", "es", "fr"
    std::string_view json;
};

std::span<const EmbeddedText> embeddedTexts();

} // namespace vh
