#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vh {

/// A disk as a whole, as far as the system tells without reading it.
struct DiskFacts {
    std::string bsdName; ///< the system's short name, such as "sdb"
    std::string device;  ///< its node, such as "/dev/sdb"
    std::string name;    ///< vendor and model, else the label of what it holds, else the short name
    int64_t bytes = 0;
    bool isMounted = false; ///< it or a part of it, also by way of what is built upon it
    bool isRemovable = false;
    bool holdsSystem = false; ///< a part of it is mounted at "/" or where the system starts from
    std::vector<std::string> mountPoints = {};
    std::vector<std::string> users = {}; ///< what is built upon it, such as "dm-0"; "swap" for swap space
    std::vector<std::string> parts = {}; ///< nodes of its partitions

    bool operator==(const DiskFacts&) const = default;
};

/// All disks with a medium; loop devices only while they have a file. By name. Empty where the system tells nothing.
std::vector<DiskFacts> wholeDisks();

/// Unmounts whatever of the disk is mounted, asking the system's own service as the person, who may be asked for a
/// password. Throws std::runtime_error that says what is in use, and for a disk that holds the system.
void unmountDisk(const DiskFacts& disk);

} // namespace vh
