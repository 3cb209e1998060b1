#pragma once

#include "Platform/FileIdentity.h"
#include "Platform/SystemError.h"

#include <optional>
#include <string>

namespace vh {

/// Thrown when some of a folder is gone and the rest could not be deleted.
class PartlyRemoved : public SystemError {
public:
    explicit PartlyRemoved(const SystemError& why) : SystemError(why) {}
};

/// Deletes a file, a link (never what it points to) or a folder with all below it, for good. Works from open folders
/// downward, so that a folder swapped for a link meanwhile is not entered. With `expected`, refuses when something
/// else lies at the path by now. Stops at the first failure and throws SystemError: what is left is still there.
void removePermanently(const std::string& path, const std::optional<FileIdentity>& expected = std::nullopt);

} // namespace vh
