#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vh {

class FileDescriptor;

/// What a file has besides its bytes: owner, mode, times to the nanosecond, and its extended attributes, which on Linux
/// hold its access lists too.
struct FileMetadata {
    struct Time {
        int64_t seconds = 0; ///< since 1970, UTC; below 0 before
        int64_t nanoseconds = 0;
        bool operator==(const Time&) const = default;
    };
    uint32_t owner = 0;
    uint32_t group = 0;
    uint32_t mode = 0; ///< the lower twelve bits
    Time accessed, modified;
    std::vector<std::pair<std::string, std::string>> attributes;
};

/// Of an open file or folder. Attributes that may not be read are left out. Throws SystemError that names `path`.
FileMetadata metadataOf(const FileDescriptor& file, const std::string& path);

/// The same of a folder at a path; a link there is followed.
FileMetadata metadataOfFolder(const std::string& path);

/// What of a file could not be given, and why.
struct RefusedPart {
    enum class What { owner, mode, times, attribute };
    What what = What::owner;
    std::string attribute; ///< its name
    int code = 0;          ///< errno
};
using RefusedMetadata = std::vector<RefusedPart>;

/// Whether the folder in which something was made may have given it access lists of its own; they are taken away.
enum class Inherited { nothing, lists };

/// Gives it to an open file or folder, as far as file system and rights allow: an owner that may not be given loses the
/// bits with which a program runs as that owner. Returns what was refused though the file system has such a thing; empty
/// when all is as it was.
RefusedMetadata applyMetadata(const FileDescriptor& file, const FileMetadata& metadata,
                              Inherited inherited = Inherited::lists);

} // namespace vh
