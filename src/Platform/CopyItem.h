#pragma once

#include "Platform/CancelToken.h"

#include <cstdint>
#include <functional>
#include <string>

namespace vh {

struct CopiedItem {
    std::string path;  ///< where the copy lies
    int64_t files = 0; ///< links included, folders not
    int64_t bytes = 0;
};

/// Copies a file or a folder with all in it into `folder`, which must exist, under its own name or, where that is
/// taken, "name 2" ("photo 2.jpg"). Modes and modification times go along; links are copied as links; pipes, sockets
/// and devices are refused. The name appears when all of it is there and flushed; a failure or a stop leaves nothing
/// behind, a kill at most a name ending in ".varnholt-partial". Refuses a folder that holds the destination. `progress`
/// is told the bytes done so far. Throws SystemError or Cancelled.
CopiedItem copyItem(const std::string& from, const std::string& folder, const CancelToken& cancel,
                    const std::function<void(int64_t bytes)>& progress = {});

} // namespace vh
