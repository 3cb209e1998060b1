#pragma once

#include "Platform/FileIdentity.h"

#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// Moves an item to the Trash of its volume and returns where it lies now. A symbolic link moves itself, and
/// nothing is ever copied across volumes. With `expected`, refuses when something else lies at the path by now.
/// Throws SystemError; after a failure the item is where it was.
/// Source: freedesktop.org Trash specification 1.0.
[[nodiscard]] std::string moveToTrash(const std::string& path,
                                      const std::optional<FileIdentity>& expected = std::nullopt);

/// Puts an item that moveToTrash landed at `landed` back to `original`, making missing parents and never replacing
/// anything. Throws SystemError when it is no longer in the Trash, when the Trash says it came from somewhere else,
/// or when something lies at `original` again.
void restoreFromTrash(const std::string& landed, const std::string& original);

/// True when `landed` still lies in the Trash and came from `original`.
bool isInTrash(const std::string& landed, const std::string& original);

} // namespace vh
