#pragma once

#include "Tools/FolderSync/SyncPlan.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace vh::app {

/// How far a plan is, by the bytes of its actions and a little for each of them.
class FolderSyncPace {
public:
    explicit FolderSyncPace(const sync::SyncPlan& plan);

    double fraction(int64_t done) const; ///< 0 to 1
    int64_t bytes(int64_t done) const;
    int64_t totalBytes() const { return bytes_.back(); }
    /// Seconds until the end, after so many; nothing while it is too early to say.
    std::optional<double> secondsLeft(int64_t done, double seconds) const;

private:
    double weight(int64_t done) const;

    std::vector<int64_t> bytes_; ///< of the first n actions
};

} // namespace vh::app
