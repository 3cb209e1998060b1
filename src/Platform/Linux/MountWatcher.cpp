#include "Platform/MountWatcher.h"

#include "Platform/Linux/BlockDevices.h"
#include "Platform/Linux/VolumeChoice.h"
#include "Platform/Posix/Calls.h"

#include <poll.h>

namespace vh {

std::vector<VolumeFacts> volumesIn(const std::vector<MountEntry>& table, const BlockDevices& devices) {
    std::vector<VolumeFacts> volumes;
    for (const MountEntry& entry : entriesWithRoot(table)) {
        if (isOnNetwork(entry)) {
            const ShareSource source = parseShareSource(entry.source);
            volumes.push_back({entry.path, volumeName(entry, std::nullopt), std::nullopt, true, false,
                               source.host, source.share});
            continue;
        }
        const BlockDevice device = devices.under(entry);
        // Without a device of its own it is a phone, an archive or the like, attached by somebody.
        const bool isAttached = entry.fileSystem.starts_with("fuse.") && entry.path != "/";
        volumes.push_back({entry.path, volumeName(entry, device.label), device.uuid, false,
                           device.isInternal && !isAttached, "", ""});
    }
    return volumes;
}

std::vector<VolumeFacts> volumesNow() {
    return volumesIn(mountTable(), BlockDevices());
}

MountWatcher::MountWatcher() : table_(openPath("/proc/self/mountinfo", O_RDONLY)) {}

/// The kernel takes the news back when it has been polled for; reading is not needed.
void MountWatcher::acknowledge() {
    pollfd table{table_.get(), POLLPRI, 0};
    ::poll(&table, 1, 0);
}

} // namespace vh
