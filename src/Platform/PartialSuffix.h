#pragma once

#include <string_view>

namespace vh {

/// What the temporary names of this program end in, so that leftovers of a killed one are recognised.
constexpr std::string_view partialSuffix = ".varnholt-partial";

} // namespace vh
