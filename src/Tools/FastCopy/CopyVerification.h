#pragma once

#include "Tools/FastCopy/CopyLanes.h"
#include "Tools/FastCopy/CopyRun.h"

namespace vh::copy {

class CopyProofs;

/// Reads back all that landed and was not proven before, from the medium and not from memory, and compares it with its
/// source, file by file. A copy that differs stays where it is. What is proven is noted in `proofs`, which may be null.
/// The last lane is that of the sources.
void verify(CopyRun& run, CopyLanes& lanes, CopyProofs* proofs);

} // namespace vh::copy
