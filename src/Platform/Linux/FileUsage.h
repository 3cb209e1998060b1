#pragma once

#include "Platform/FileUsage.h"

namespace vh {

/// Of `name` in an open folder, or of the folder itself where the name is empty.
std::optional<FileUsage> usageAt(int folder, const char* name);

} // namespace vh
