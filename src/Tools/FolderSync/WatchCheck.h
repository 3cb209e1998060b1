#pragma once

#include "Tools/FolderSync/SyncPair.h"
#include "Tools/FolderSync/WatchState.h"

#include <optional>

namespace vh::sync {

struct WatchCheck {
    /// What keeps a pair from being synced now; nothing when all is there.
    static std::optional<WatchState> blocker(const SyncPair& pair);
};

} // namespace vh::sync
