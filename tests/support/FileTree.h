#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace vh::test {

/// All below a folder as text: type, mode, owner, times to the nanosecond, extended attributes and contents or what a
/// link says, by path. Two folders that a person could not tell apart give the same.
std::map<std::string, std::string> treeOf(const std::string& folder);

/// Gives a file, folder or link this time of modification, and 123456789 ns.
void setTime(const std::string& path, int64_t seconds);

/// Files and folders of every kind that a copy must carry over: empty, sparse, of exactly a block, of several blocks,
/// with names that are not UTF-8, times before 1970, modes and extended attributes. Below `folder`, which must exist.
void growTree(const std::string& folder, size_t block = 4u << 20);

} // namespace vh::test
