#include "Platform/TrashSearch.h"

#include "Platform/FileIdentity.h"
#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/Linux/TrashFolder.h"
#include "Platform/Linux/TrashInfo.h"
#include "Platform/PathParts.h"
#include "Platform/SystemError.h"
#include "Platform/Trash.h"
#include "Platform/Volumes.h"

#include <algorithm>

namespace vh {

namespace {

/// What came from `original` and has the newest info file.
std::optional<std::string> newestIn(const TrashFolder& trash, const std::string& original,
                                    std::chrono::sys_seconds notBefore) {
    // A name that was taken is numbered before its last dot, and a long one is shortened.
    const std::string name = splitPath(original).name;
    const std::string start = name.substr(0, std::min<size_t>(name.rfind('.'), 32));
    std::optional<std::string> newest;
    int64_t newestDate = notBefore.time_since_epoch().count();
    for (const std::string& landed : childNames(joinPath(trash.path, "files"))) {
        const std::string place = joinPath(joinPath(trash.path, "files"), landed);
        if (!landed.starts_with(start) || !isInTrash(place, original))
            continue;
        const auto info =
            statusOf(joinPath(joinPath(trash.path, "info"), landed + std::string(trashInfoSuffix)));
        if (!info || info->modifiedSeconds < newestDate)
            continue;
        newest = place;
        newestDate = info->modifiedSeconds;
    }
    return newest;
}

} // namespace

std::optional<std::string> findInTrash(const std::string& original, std::chrono::sys_seconds notBefore) {
    try {
        const std::string folder = realFolder(splitPath(original).folder);
        const auto device = [](const std::string& path) {
            return identityOf(path).value_or(FileIdentity{}).device;
        };
        TrashFolder trash = TrashFolder::ofHome();
        if (device(folder) != device(trash.path))
            trash = TrashFolder::ofVolume(mountPointOf(folder));
        return newestIn(trash, original, notBefore);
    } catch (const SystemError&) {
        return std::nullopt;
    }
}

} // namespace vh
