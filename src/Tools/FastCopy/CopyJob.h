#pragma once

#include "Core/Uuid.h"
#include "Tools/FastCopy/CopyManifest.h"
#include "Tools/FastCopy/CopyOptions.h"
#include "Tools/FastCopy/CopyReport.h"
#include "Tools/FastCopy/CopySource.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vh::copy {

/// One entry of the copy queue.
struct CopyJob {
    enum class State { queued, running, verifying, finished, stopped, failed };

    Uuid id;
    int number = 0; ///< 1, 2, … within the session
    CopyOptions options;
    std::optional<ManifestKind> manifest;
    std::vector<CopySource> sources;
    std::vector<std::string> destinations;
    std::optional<int64_t> bytes; ///< to each destination; nothing until measured
    std::optional<int64_t> fileCount;
    State state = State::queued;
    std::vector<int64_t> done; ///< bytes, per destination
    std::set<size_t> paused, removed;
    double rate = 0; ///< bytes a second
    std::optional<CopyReport> report;
    bool unmount = false;                 ///< of a disk source, before it is imaged
    std::optional<std::string> imagePath; ///< of a disk source
    int64_t badBlocks = 0;

    /// Destinations that were not removed.
    std::vector<size_t> visibleIndices() const;
    bool isOver() const { return state >= State::finished; }
    /// Whether the next job has to wait for this one: it verifies, or copies to somebody who is not paused.
    bool holdsTheLine() const;
};

/// The job that may start now, or nothing. Order is that of the list.
std::optional<size_t> nextToStart(const std::vector<CopyJob>& jobs, bool runTogether);

} // namespace vh::copy
