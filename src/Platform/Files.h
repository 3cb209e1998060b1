#pragma once

#include "Platform/FileIdentity.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// The whole file; throws SystemError.
std::string readFile(const std::string& path);
/// Like readFile, but nothing when no file is there.
std::optional<std::string> readFileIfPresent(const std::string& path);

/// Writes to a temporary name beside `path`, flushes, renames over it and flushes the folder. After a failure or a
/// crash the old file is whole and nothing is left beside it but, after a kill, a name ending in ".varnholt-partial".
/// A new file gets `mode`, an existing one keeps its own. Throws SystemError.
void writeFileAtomically(const std::string& path, std::string_view bytes, unsigned mode = 0600);

/// Creates the folder and its missing parents with mode 0700. Throws SystemError.
void makeFolders(const std::string& path);

/// Moves a file or folder; across volumes it copies, flushes and then removes. Replaces a file at the target.
void moveFile(const std::string& from, const std::string& to);

/// What lies at a path, a symbolic link being itself.
enum class FileType { file, folder, link, socket, other };
struct FileStatus {
    FileType type = FileType::other;
    int64_t byteSize = 0;
    int64_t modifiedSeconds = 0; ///< since 1970, UTC
    uint32_t owner = 0;
    FileIdentity identity;
};
std::optional<FileStatus> statusOf(const std::string& path);

/// True when this user may write `path` (follows a link, as access(2) does).
bool isWritable(const std::string& path);

} // namespace vh
