#include "Tools/FolderSync/work/SyncLook.h"

#include "Platform/PathParts.h"
#include "Platform/SystemError.h"
#include "Platform/Volumes.h"
#include "Tools/FolderSync/WatchCheck.h"

namespace vh::automation {

using sync::WatchState;

namespace {

std::string mountOf(const std::string& folder) {
    try {
        return mountPointOf(folder);
    } catch (const SystemError&) {
        return {};
    }
}

/// Whether a disk that was there is not: its empty mount point must not be taken for its content.
bool isUnmounted(const std::string& before, const std::string& now) {
    return !before.empty() && now != before && isAtOrBelow(before, now);
}

} // namespace

SyncLook lookAt(const sync::SyncPair& pair, const SyncMounts& before) {
    SyncLook look{sync::WatchCheck::blocker(pair), before};
    if (look.blocker)
        return look;
    const SyncMounts now{mountOf(pair.source), mountOf(pair.destination)};
    if (isUnmounted(before.source, now.source))
        look.blocker = WatchState{WatchState::Kind::waitingForSource, {}, 0};
    else if (isUnmounted(before.destination, now.destination))
        look.blocker = WatchState{WatchState::Kind::waitingForDestination, {}, 0};
    else
        look.mounts = now;
    return look;
}

} // namespace vh::automation
