#include "app/FolderSyncPace.h"

#include <algorithm>

namespace vh::app {

namespace {

/// What an action costs beside its bytes, in bytes.
constexpr double costOfAction = 64 << 10;
/// Nothing is said before: in seconds and as a share of the whole.
constexpr double leastSeconds = 2;
constexpr double leastFraction = 0.01;

} // namespace

FolderSyncPace::FolderSyncPace(const sync::SyncPlan& plan) {
    using Kind = sync::SyncAction::Kind;
    bytes_.reserve(plan.actions.size() + 1);
    bytes_.push_back(0);
    for (const sync::SyncAction& each : plan.actions)
        bytes_.push_back(bytes_.back() +
                         (each.kind == Kind::copy || each.kind == Kind::update ? each.bytes : 0));
}

int64_t FolderSyncPace::bytes(int64_t done) const {
    return bytes_[static_cast<size_t>(std::clamp<int64_t>(done, 0, int64_t(bytes_.size()) - 1))];
}

double FolderSyncPace::weight(int64_t done) const {
    return double(bytes(done)) + costOfAction * double(done);
}

double FolderSyncPace::fraction(int64_t done) const {
    const double whole = weight(int64_t(bytes_.size()) - 1);
    return whole > 0 ? std::min(1.0, weight(done) / whole) : 1;
}

std::optional<double> FolderSyncPace::secondsLeft(int64_t done, double seconds) const {
    const double gone = fraction(done);
    if (seconds < leastSeconds || gone < leastFraction)
        return std::nullopt;
    return seconds * (1 - gone) / gone;
}

} // namespace vh::app
