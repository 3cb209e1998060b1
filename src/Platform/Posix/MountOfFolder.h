#pragma once

#include <cstdint>
#include <sys/stat.h>

namespace vh {

/// A number for the mounted file system an open folder stands in. Two folders of one file system that is mounted
/// twice differ where the system can tell. `status` is the folder's own.
uint64_t mountOfFolder(int folder, const struct stat& status);

} // namespace vh
