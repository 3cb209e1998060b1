#pragma once

#include "Tools/FastCopy/CopyDestination.h"
#include "Tools/FastCopy/CopyLanes.h"
#include "Tools/FastCopy/CopyRun.h"
#include "Tools/FastCopy/CopySources.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace vh::copy {

/// How much is read at once and written to all destinations in step.
constexpr size_t chunkSize = 1u << 20;

/// Streams files, one at a time: each is read once and written to several destinations in step, and booked. A
/// destination that is paused or removed meanwhile is left out; one that fails does not stop the others.
class LargeFiles {
public:
    LargeFiles(CopyRun& run, CopySources& sources,
               std::vector<std::unique_ptr<CopyDestination>>& destinations, CopyLanes& lanes)
        : run_(run), sources_(sources), destinations_(destinations), lanes_(lanes) {}

    void copy(size_t item, const std::vector<size_t>& takers);

private:
    CopyRun& run_;
    CopySources& sources_;
    std::vector<std::unique_ptr<CopyDestination>>& destinations_;
    CopyLanes& lanes_;
    std::unique_ptr<char[]> blocks_[2]; ///< made for the first file
};

} // namespace vh::copy
