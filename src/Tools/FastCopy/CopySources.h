#pragma once

#include "Platform/CopyFolder.h"
#include "Tools/FastCopy/CopyItems.h"

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
        const auto found = folders_.try_emplace(place.source->item, place.source->path).first;
        return found->second.source(place.inside, attributes_);
    }

private:
    const CopyItems& items_;
    const SourceFile::Attributes attributes_;
    std::map<uint32_t, CopyFolder> folders_;
};

} // namespace vh::copy
