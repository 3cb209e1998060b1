#pragma once

#include "Platform/CopyFolder.h"
#include "Platform/SystemError.h"
#include "Tools/FastCopy/CopyItems.h"

#include <cerrno>
#include <map>

namespace vh::copy {

/// Opens what is to be copied. A link that came into a source since it was looked at is not followed. One thread at a
/// time.
class CopySources {
public:
    CopySources(const CopyItems& items, SourceFile::Attributes attributes)
        : items_(items), attributes_(attributes) {}

    /// Throws SystemError.
    SourceFile open(size_t item) {
        const CopyItems::Place place = items_.placeOf(item);
        if (place.inside.empty())
            return SourceFile(place.source->path, attributes_);
        return folderOf(*place.source).source(place.inside, attributes_);
    }

    /// Of a link below a source. Throws SystemError, also when it is none any more.
    CopyLink link(size_t item) {
        const CopyItems::Place place = items_.placeOf(item);
        if (auto link = folderOf(*place.source).link(place.inside))
            return std::move(*link);
        throw SystemError(EINVAL, items_.pathOf(item));
    }

private:
    CopyFolder& folderOf(const CopyItems::Source& source) {
        return folders_.try_emplace(source.item, source.path).first->second;
    }

    const CopyItems& items_;
    const SourceFile::Attributes attributes_;
    std::map<uint32_t, CopyFolder> folders_;
};

} // namespace vh::copy
