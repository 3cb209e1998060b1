#pragma once

#include "Core/Date.h"
#include "Core/PathAllowlist.h"
#include "Platform/Folders.h"
#include "Tools/SystemJunk/JunkExclusions.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vh::junk {

/// Where junk is looked for and what is left alone there.
struct SystemJunkConfiguration {
    PathAllowlist allowlist;     ///< the roots, in scan order
    std::vector<RootKind> kinds; ///< what each root is
    std::set<std::string> deniedBasenames;
    int maxFilesToMeasurePerItem = 20000;
    std::vector<std::string> heldPaths;  ///< no item may be or hold one of these
    std::vector<std::string> ownFolders; ///< nor lie inside one of these
    std::optional<uint32_t> owner;       ///< whose temporary entries are junk; nothing: anybody's
    Clock clock = systemNow;

    /// The caches, the logs and the temporary folder, in this order. `databaseFolder` is where this program keeps its
    /// run log, when that is not its usual place.
    static SystemJunkConfiguration userDefaults(const Folders& folders,
                                                const std::string& databaseFolder = {});
    /// One root on a scratch folder, where the name "KEEP_ME" is denied.
    static SystemJunkConfiguration fixture(const std::string& root);
};

} // namespace vh::junk
