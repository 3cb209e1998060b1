#pragma once

#include "Platform/Volumes.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

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
    /// The number of that device; file systems of several devices have a number of their own, and their source names one
    /// of them.
    uint64_t numberOf(const MountEntry& entry) const;
    /// What udev noted of a device.
    std::optional<std::string> udev(uint64_t device, std::string_view key) const;
    /// Of a device by its real folder in /sys; throws SystemError where there is none.
    bool isInternal(const std::string& device, int depth = 0) const;

    const std::string& root() const { return root_; }

private:
    std::string root_;
    std::map<uint64_t, std::string> uuids_;
    std::map<uint64_t, std::string> labels_;
};

} // namespace vh
