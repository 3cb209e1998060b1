#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/FileIdentity.h"

#include <optional>
#include <string>

namespace vh {

/// removePermanently of what is called `name` in an open folder; `path` is only said in errors.
void removePermanentlyAt(const FileDescriptor& parent, const std::string& name, const std::string& path,
                         const std::optional<FileIdentity>& expected = std::nullopt);

} // namespace vh
