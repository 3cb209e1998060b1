#pragma once

#include "Platform/CancelToken.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vh::copy {

/// One file or folder of a copy.
struct CopyItem {
    std::string source;   ///< absolute
    std::string relative; ///< below a destination, beginning with the source's own name
    bool isFolder = false;
    int64_t size = 0; ///< bytes, 0 for a folder
};

/// What a copy of some sources comes to.
struct CopyPlan {
    int64_t fileCount = 0;
    int64_t folderCount = 0;
    int64_t bytes = 0;
    int64_t largestFile = 0;
};

/// What the sources hold.
struct CopyItems {
    std::vector<CopyItem> items;         ///< a folder before what it holds
    std::vector<std::string> unreadable; ///< why something below a source is not among them, a line each
};

/// Links, pipes, sockets and devices below a source are left out. Throws CopyError (sourceMissing) or Cancelled.
CopyItems itemsOf(const std::vector<std::string>& sources, const CancelToken& cancel = {});
CopyPlan planOf(const std::vector<CopyItem>& items);

} // namespace vh::copy
