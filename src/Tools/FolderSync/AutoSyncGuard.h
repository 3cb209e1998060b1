#pragma once

#include "Tools/FolderSync/SyncPlan.h"

namespace vh::sync {

/// Holds back what nobody looks at when it would remove much.
struct AutoSyncGuard {
    static constexpr int64_t minimumDeletes = 20;

    /// Whether at least half of what the destination holds would go.
    static bool holds(const SyncPlan& plan) {
        const int64_t deletes = plan.deletes();
        return deletes >= minimumDeletes && plan.unchanged + plan.updates() + deletes <= 2 * deletes;
    }
};

} // namespace vh::sync
