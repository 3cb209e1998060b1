#pragma once

#include "Platform/FileMetadata.h"

#include <sys/stat.h>

namespace vh {

/// What a status tells; the extended attributes are not in it.
FileMetadata metadataIn(const struct stat& status);

} // namespace vh
