#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vh::copy {

enum class CopyPhase { copying, verifying };

/// How far a copy is.
struct CopyProgress {
    CopyPhase phase = CopyPhase::copying;
    int64_t bytesDone = 0; ///< over all destinations that were not removed
    int64_t bytesTotal = 0;
    int64_t filesDone = 0;
    int64_t filesTotal = 0;
    std::string currentFile;
    double bytesPerSecond = 0; ///< read from the sources, smoothed
    std::optional<double> secondsRemaining;
    std::vector<int64_t> destinationBytes; ///< done, in the order of the destinations
    int64_t bytesPerDestination = 0;
};

} // namespace vh::copy
