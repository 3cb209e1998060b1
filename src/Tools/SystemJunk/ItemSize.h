#pragma once

#include "Platform/CancelToken.h"
#include "Platform/Files.h"

#include <cstdint>
#include <string>

namespace vh::junk {

struct ItemSize {
    int64_t bytes = 0;
    int64_t usedSeconds = 0;    ///< the latest of all that was met, as in FileUsage; hidden entries count
    int64_t touchedSeconds = 0; ///< likewise
    bool isWhole = true;        ///< nothing was left out
    bool holdsEndpoint = false; ///< a socket or a pipe was met: a running program's, most likely
};

/// The bytes of the regular files in a folder, links not followed, hidden entries and what cannot be read left out, and
/// when anything in it was last in use. Ends after `maxEntries` entries, so that a huge folder gives a lower bound rather than a long wait. Throws Cancelled.
ItemSize measureFolder(const std::string& path, int maxEntries, const CancelToken& cancel);

} // namespace vh::junk
