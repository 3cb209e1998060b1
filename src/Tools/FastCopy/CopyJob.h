#pragma once

#include "Core/Uuid.h"
#include "Tools/FastCopy/CopyManifest.h"
#include "Tools/FastCopy/CopyOptions.h"
#include "Tools/FastCopy/CopyProgress.h"
#include "Tools/FastCopy/CopyReport.h"
#include "Tools/FastCopy/CopySource.h"

#include <cstdint>
#include <memory>
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
    std::optional<double> secondsRemaining;
    std::string currentFile; ///< relative
    double verified = 0;     ///< 0 to 1, while it verifies
    bool stopping = false;   ///< asked to, and not ended yet
    std::string error;       ///< for people; why it could not begin or failed as a whole
    std::string summary;     ///< for people; of its record, once it is over
    bool endedWell = false;  ///< over, and nothing is to be said against it
    std::shared_ptr<const CopyReport> report;
    std::vector<std::string> manifests;   ///< that were written
    bool unmount = false;                 ///< of a disk source, before it is imaged
    std::optional<std::string> imagePath; ///< of a disk source
    int64_t badBlocks = 0;

    /// The disk that is imaged; null where files are copied.
    const RescueDisk* disk() const;
    /// Destinations that were not removed.
    std::vector<size_t> visibleIndices() const;
    bool isActive() const { return state == State::running || state == State::verifying; }
    bool isOver() const { return state >= State::finished; }
    /// Whether the next job has to wait for this one: it verifies, or copies to somebody who is not paused.
    bool holdsTheLine() const;
    /// Of what is there to copy to all that were not removed, 0 to 1; while it verifies, of that. Below 0 when unknown.
    double fraction() const;

    /// Takes over how far its copy is.
    void follow(const CopyProgress& progress);
    /// Takes over how its copy ended.
    void end(CopyReport finished);
};

/// The job that may start now, or nothing. Order is that of the list.
std::optional<size_t> nextToStart(const std::vector<CopyJob>& jobs, bool runTogether);

/// What is wrong with copying these sources to one more place, by their paths alone.
enum class PlaceFault {
    none,
    insideSource, ///< it is a source, or lies in one
    holdsSource   ///< a source lies right there: only a second name can come of it
};
PlaceFault faultOf(const std::string& destination, const std::vector<std::string>& sources);

} // namespace vh::copy
