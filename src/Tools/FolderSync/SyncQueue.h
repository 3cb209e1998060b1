#pragma once

#include "Core/Uuid.h"

#include <optional>
#include <vector>

namespace vh::sync {

/// One sync at a time across all pairs. One thread.
struct SyncQueue {
    std::optional<Uuid> running;
    std::vector<Uuid> waiting;

    /// True when nothing ran and it may begin; else it waits, once.
    bool request(const Uuid& id);
    /// The next one, which runs from now on.
    std::optional<Uuid> finish();
    /// No longer waits.
    void drop(const Uuid& id);
};

} // namespace vh::sync
