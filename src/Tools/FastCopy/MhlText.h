#pragma once

#include "Core/Date.h"
#include "Tools/FastCopy/CopyManifest.h"

#include <string>
#include <string_view>
#include <vector>

namespace vh::copy {

/// Whether a path can stand in such a list: XML has no place for names that are not UTF-8 or hold control characters.
bool fitsMhl(std::string_view path);

/// A Media Hash List of files whose paths all fit, hashed between two moments.
std::string mhlText(const std::vector<ManifestEntry>& entries, Date start, Date end);

/// Of version 1; of several checksums of a file the strongest counts. Throws ManifestError.
std::vector<ManifestEntry> parseMhl(std::string_view text);

} // namespace vh::copy
