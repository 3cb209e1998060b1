#pragma once

#include "Core/Message.h"
#include "Platform/CancelToken.h"
#include "Tools/FastCopy/CopyOptions.h"
#include "Tools/FastCopy/LeftOut.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vh::copy {

/// One file, folder or link of a copy. There may be millions, so it knows its own name alone.
struct CopyItem {
    static constexpr uint32_t none = UINT32_MAX;

    std::string name;
    uint32_t folder = none; ///< the item that holds it; none for a source itself
    enum class Kind : uint8_t { file, folder, link };
    Kind kind = Kind::file;
    int64_t size = 0; ///< bytes, 0 for what is no file

    bool isFolder() const { return kind == Kind::folder; }
    bool isLink() const { return kind == Kind::link; }
};

/// What the sources hold.
struct CopyItems {
    std::vector<CopyItem> items; ///< a folder before what it holds
    struct Source {
        uint32_t item = 0;
        std::string path; ///< absolute; of a folder with all links followed
    };
    std::vector<Source> sources;
    Messages unreadable; ///< why something below a source is not among them
    LeftOut leftOut;

    /// Below a destination, beginning with the source's own name.
    std::string relativeOf(size_t item) const;
    /// The source it is or belongs to, and its path below that one, empty for the source itself.
    struct Place {
        const Source* source = nullptr;
        std::string inside;
    };
    Place placeOf(size_t item) const;
    std::string pathOf(size_t item) const; ///< absolute
};

/// What a copy of some sources comes to.
struct CopyPlan {
    int64_t fileCount = 0; ///< with the links
    int64_t folderCount = 0;
    int64_t bytes = 0;
    int64_t largestFile = 0;
};

/// Pipes, sockets and devices below a source are left out and counted, links as `links` says; a source that is a link
/// itself is followed. Throws CopyError (sourceMissing) or Cancelled.
CopyItems itemsOf(const std::vector<std::string>& sources, CopyLinks links, const CancelToken& cancel = {});
CopyPlan planOf(const std::vector<CopyItem>& items);

} // namespace vh::copy
