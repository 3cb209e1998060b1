#pragma once

#include "Platform/WholeDisks.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vh::diskUtility {

/// macOS tells of disks in property lists; its own converter makes JSON of them, input on standard input.
inline const std::vector<std::string> toJson{"/usr/bin/plutil", "-convert", "json", "-o", "-", "-"};
inline const std::vector<std::string> list{"/usr/sbin/diskutil", "list", "-plist"};
std::vector<std::string> info(const std::string& disk);
/// Of all that is mounted from it, also from containers upon it.
std::vector<std::string> unmount(const std::string& disk);

/// wholeDisks from the JSON of `list`; `infoOf` gives that of one disk. A container that the system shows as a disk of
/// its own counts as a part of the disk that it lies on. Empty for what is no such text.
std::vector<DiskFacts> disksIn(std::string_view listJson,
                               const std::function<std::string(const std::string& disk)>& infoOf);

} // namespace vh::diskUtility
