#include "Platform/Volumes.h"

#include "Platform/Linux/BlockDevices.h"
#include "Platform/Linux/VolumeChoice.h"
#include "Platform/Posix/Calls.h"

#include <sys/statvfs.h>

namespace vh {

namespace {

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

std::vector<Volume> mountedVolumes() {
    const BlockDevices devices;
    std::vector<Volume> volumes;
    for (const MountEntry& entry : entriesWithRoot(mountTable())) {
        struct statvfs space {};
        if (!isFolder(entry.path) || ::statvfs(entry.path.c_str(), &space) != 0 || space.f_blocks == 0)
            continue;
        volumes.push_back({volumeName(entry, devices.under(entry).label), entry.path, entry.source,
                           entry.fileSystem, uint64_t{space.f_blocks} * space.f_frsize,
                           uint64_t{space.f_bavail} * space.f_frsize, entry.readOnly});
    }
    return volumes;
}

} // namespace vh
