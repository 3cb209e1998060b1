#pragma once

#include "Tools/FastCopy/CopyOptions.h"
#include "cli/CommandLine.h"

#include <functional>
#include <string>
#include <vector>

namespace vh::cli {

/// Adds the verb that lists whole disks. `hasWords` tells whether the noun got words of its own, to which the verb does
/// not fit.
void describeDisks(Verb& copy, CommandLine& line, std::function<bool()> hasWords);

/// Whether a block device is among them.
bool holdsDisk(const std::vector<std::string>& sources);

/// Images the one disk that `sources` is to be. Throws UsageError for a part of a disk, and for a disk among other
/// sources.
Exit copyDisk(Context& context, const std::vector<std::string>& sources,
              const std::vector<std::string>& destinations, const copy::CopyOptions& options, bool unmount);

} // namespace vh::cli
