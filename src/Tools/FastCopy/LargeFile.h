#pragma once

#include "Tools/FastCopy/CopyDestination.h"
#include "Tools/FastCopy/CopyLanes.h"
#include "Tools/FastCopy/CopyRun.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace vh::copy {

/// How much is read at once and written to all destinations in step.
constexpr size_t chunkSize = 4u << 20;

/// Copies one file by one read to several destinations at once, and books it. A destination that is paused or removed
/// meanwhile is left out; one that fails does not stop the others.
void copyLargeFile(CopyRun& run, std::vector<std::unique_ptr<CopyDestination>>& destinations,
                   CopyLanes& lanes, size_t item, const std::vector<size_t>& takers);

} // namespace vh::copy
