#pragma once

#include "Platform/Volumes.h"
#include "Platform/WholeDisks.h"

#include <string>
#include <vector>

namespace vh {

class BlockDevices;

/// wholeDisks for a recorded machine.
std::vector<DiskFacts> disksAmong(const BlockDevices& devices, const std::vector<MountEntry>& mounts);

/// What is mounted from a disk of it, in the table's order.
std::vector<MountEntry> mountsOf(const std::string& bsdName, const BlockDevices& devices,
                                 const std::vector<MountEntry>& mounts);

/// The words that unmount one file system: the administrator does it himself, a person by way of the desktop's service.
std::vector<std::string> unmountCommand(const MountEntry& entry, bool isAdministrator, bool hasService);

} // namespace vh
