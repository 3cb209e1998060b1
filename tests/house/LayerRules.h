#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vh::house {

/// What is wrong with `line` in the file at `path` (relative to src/), by the floors of the house: a folder includes
/// only what stands below it, the operating system stays in Platform, Qt above the engines. Nothing when all is well.
std::optional<std::string> layerFault(std::string_view path, std::string_view line);

} // namespace vh::house
