#pragma once

#include <optional>
#include <string>

namespace vh {

/// Where the item that was last moved to the Trash from `original` lies now, for one whose landing was never heard of.
/// Nothing when no Trash of this user says that it holds it.
std::optional<std::string> findInTrash(const std::string& original);

} // namespace vh
