#pragma once

#include "Platform/Volumes.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace vh {

/// What udev and the kernel know of a block device, which nobody has to read for it.
struct BlockDevice {
    std::optional<std::string> uuid;  ///< of its file system
    std::optional<std::string> label; ///< of its file system
    bool isInternal = true;           ///< built in, as far as one can tell
};

/// The block devices at one moment.
class BlockDevices {
public:
    /// `root` stands before /dev, /run and /sys.
    explicit BlockDevices(std::string root = "");

    /// Of the device that holds the mounted file system; all but unknown for one without a device.
    BlockDevice under(const MountEntry& entry) const;

private:
    bool isInternal(const std::string& device, int depth) const;

    std::string root_;
    std::map<uint64_t, std::string> uuids_;
    std::map<uint64_t, std::string> labels_;
};

} // namespace vh
