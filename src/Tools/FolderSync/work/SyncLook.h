#pragma once

#include "Tools/FolderSync/SyncPair.h"
#include "Tools/FolderSync/WatchState.h"

#include <optional>
#include <string>

namespace vh::automation {

/// The mount points that the folders of a pair are in; empty when that is not known.
struct SyncMounts {
    std::string source, destination;
};

struct SyncLook {
    std::optional<sync::WatchState> blocker; ///< what keeps the pair from being synced
    SyncMounts mounts;                       ///< as before where there is one
};

/// Looks at the folders of a pair, which were in those mount points when it was last well: a disk that is not there
/// any more keeps it from being synced, whatever its mount point holds. Blocks; any thread.
SyncLook lookAt(const sync::SyncPair& pair, const SyncMounts& before);

} // namespace vh::automation
