#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace vh {

/// Where the item that was last moved to the Trash from `original` lies now, for one whose landing was never heard of.
/// Nothing when no Trash of this user says that it took it at `notBefore` or later.
std::optional<std::string> findInTrash(const std::string& original, std::chrono::sys_seconds notBefore);

} // namespace vh
