#pragma once

#include "Tools/FastCopy/CopyManifest.h"

#include <string>
#include <string_view>
#include <vector>

namespace vh::copy {

/// "<hash>  <path>" and a line feed. A path with a line feed is escaped and the line begins with a backslash, as
/// sha256sum does it.
std::string sumLine(HashAlgorithm algorithm, std::string_view hash, std::string_view path);

/// Also the lines of other tools: "<hash> *<path>" and "SHA256 (<path>) = <hash>". The algorithm follows from the line.
/// Throws ManifestError.
std::vector<ManifestEntry> parseSums(std::string_view text);

/// What is wrong with a line, from 1.
Message atLine(size_t line, Message what);

/// The path without empty and "." parts. Throws ManifestError when it leads out of a folder.
std::string pathBelow(std::string_view path);

/// Hexadecimal digits in lower case; nothing when there are others or not as many as the algorithm has.
std::optional<std::string> hashText(HashAlgorithm algorithm, std::string_view text);

} // namespace vh::copy
