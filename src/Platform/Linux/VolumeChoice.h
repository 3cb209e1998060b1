#pragma once

#include "Platform/MountWatcher.h"
#include "Platform/Volumes.h"

#include <optional>

namespace vh {

class BlockDevices;

/// Of a mount table those that hold a person's files: no kernel file systems, images of installed software or boot
/// partitions; each device once, at its shortest path; the root first, then by path.
std::vector<MountEntry> entriesForPeople(const std::vector<MountEntry>& table);

/// The mounted volumes for people; the root is always there, though in a changed root the table does not name it.
std::vector<MountEntry> entriesWithRoot(const std::vector<MountEntry>& table);

/// A file system that another machine serves, so that asking it anything may hang.
bool isOnNetwork(const MountEntry& entry);

/// What people call a volume: "System" for the root, else its label, else the last folder of the mount point.
std::string volumeName(const MountEntry& entry, const std::optional<std::string>& label);

/// volumesNow for another mount table.
std::vector<VolumeFacts> volumesIn(const std::vector<MountEntry>& table, const BlockDevices& devices);

/// The label a link under /dev/disk/by-label stands for: udev writes odd bytes as "\x20".
std::string labelOfLinkName(std::string_view name);

} // namespace vh
