#pragma once

#include "Tools/FastCopy/CopyLanes.h"
#include "Tools/FastCopy/CopyRun.h"

namespace vh::copy {

/// Reads back all that landed, from the medium and not from memory, and compares it with its source, file by file. A
/// copy that differs stays where it is. The last lane is that of the sources.
void verify(CopyRun& run, CopyLanes& lanes);

} // namespace vh::copy
