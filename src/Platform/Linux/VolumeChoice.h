#pragma once

#include "Platform/Volumes.h"

namespace vh {

/// Of a mount table those that hold a person's files: no kernel file systems, images of installed software or boot
/// partitions; each device once, at its shortest path; the root first, then by path.
std::vector<MountEntry> entriesForPeople(const std::vector<MountEntry>& table);

/// The label a link under /dev/disk/by-label stands for: udev writes odd bytes as "\x20".
std::string labelOfLinkName(std::string_view name);

} // namespace vh
