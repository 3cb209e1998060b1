#pragma once

#include <string>
#include <string_view>

namespace vh {

/// Valid UTF-8 with U+FFFD in the place of what is not; all else, line ends too, as it is.
std::string validText(std::string_view bytes);

} // namespace vh
