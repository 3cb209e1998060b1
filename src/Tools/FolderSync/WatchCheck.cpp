#include "Tools/FolderSync/WatchCheck.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/SystemError.h"

#include <filesystem>

namespace vh::sync {

namespace {

bool isFolder(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

bool canBeListed(const std::string& folder) {
    try {
        FolderReader(folder).next();
        return true;
    } catch (const SystemError&) {
        return false;
    }
}

} // namespace

std::optional<WatchState> WatchCheck::blocker(const SyncPair& pair) {
    if (!isFolder(pair.source))
        return WatchState{WatchState::Kind::waitingForSource, {}, 0};
    if (!canBeListed(pair.source))
        return WatchState::notPermitted(pair.source);
    if (!isFolder(pair.destination))
        return WatchState{WatchState::Kind::waitingForDestination, {}, 0};
    if (!isWritable(pair.destination))
        return WatchState::notPermitted(pair.destination);
    return std::nullopt;
}

} // namespace vh::sync
