#pragma once

#include "Platform/FileDescriptor.h"

#include <string>
#include <sys/stat.h>

namespace vh {

/// A new file in an open folder that has no name yet, so that nothing is left of it when it gets none. Empty and errno on
/// failure; `cannotBeUnnamed` tells when it is the file system that has none such.
FileDescriptor createUnnamed(int folder, mode_t mode);
bool cannotBeUnnamed(int code);
/// Gives it a name that must be free. False and errno on failure.
bool giveName(const FileDescriptor& file, int folder, const std::string& name);

} // namespace vh
