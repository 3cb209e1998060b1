#pragma once

#include "Platform/CopyFolder.h"
#include "Tools/FastCopy/CopyProofs.h"
#include "Tools/FastCopy/CopyRun.h"

#include <optional>
#include <vector>

namespace vh::copy {

/// Books what an interrupted run of the same copy had landed, as long as neither side has changed since. What was proven
/// counts as verified; what was not is read back later like all that lands. Engine's thread.
class TakenUp {
public:
    TakenUp(CopyRun& run, const CopyProofs& proofs) : run_(run), proofs_(proofs) {}

    /// Whether this file need not be copied to there.
    bool takeUp(size_t item, size_t destination);

private:
    const std::optional<FileState>& sourceOf(size_t item);
    std::optional<FileState> copyAt(size_t destination, const std::string& place);

    CopyRun& run_;
    const CopyProofs& proofs_;
    std::vector<std::optional<CopyFolder>> folders_; ///< the lanes have their own
    std::optional<size_t> item_;
    std::optional<FileState> source_; ///< of item_
};

} // namespace vh::copy
