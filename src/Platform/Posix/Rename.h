#pragma once

#include <string>

namespace vh {

/// Renames an item (never what a link points to) to a name that must be free. False and errno on failure, EEXIST when
/// something lies there. Atomic even where the file system has no such call, save where it has no hard links either.
bool renameWithoutReplacing(int fromFolder, const std::string& from, int toFolder, const std::string& to);

} // namespace vh
