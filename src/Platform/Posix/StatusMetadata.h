#pragma once

#include "Platform/FileMetadata.h"
#include "Platform/SourceFile.h"

#include <string>
#include <sys/stat.h>

namespace vh {

/// What a status tells; the extended attributes are not in it.
FileMetadata metadataIn(const struct stat& status);

FileState stateIn(const struct stat& status);

/// Gives owner and times to a link, as far as file system and rights allow.
void applyToLink(int folder, const std::string& name, const FileMetadata& metadata);

} // namespace vh
