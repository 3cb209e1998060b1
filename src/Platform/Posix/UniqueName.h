#pragma once

#include <string>
#include <string_view>

namespace vh {

/// What the temporary names of this program end in, so that leftovers of a killed one are recognised.
constexpr std::string_view partialSuffix = ".varnholt-partial";

/// A hidden name that nobody else has, made from `name` and short enough for any file system: ".name.<random>" and
/// the suffix.
std::string uniquePartialName(std::string_view name);

} // namespace vh
