#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vh {

/// A block device as the kernel shows it in /sys.
struct BlockNode {
    std::string name; ///< "sdb1"
    std::string folder;
    uint64_t number = 0; ///< as st_rdev
};

/// What lies in a folder of the kernel's or of udev's, by name; empty where there is none.
std::vector<std::string> namesIn(const std::string& folder);
/// What a file there says, without the blanks around it; empty where there is none.
std::string wordsIn(const std::string& path);
/// The number of the device whose node lies there; 0 where none does.
uint64_t blockDeviceAt(const std::string& path);

BlockNode blockNode(const std::string& folder);
/// The disk itself and its partitions.
std::vector<BlockNode> partsOf(const BlockNode& disk);
/// What is built upon a device, however many floors high: encrypted volumes, volume groups, mirrors.
std::vector<BlockNode> usersOf(const BlockNode& device);

} // namespace vh
