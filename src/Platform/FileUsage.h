#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

namespace vh {

/// Size and times of a file or folder; seconds since 1970, UTC.
struct FileUsage {
    int64_t byteSize = 0;
    /// When it was last written to or, for what is no folder, read: looking at a folder is no use of it.
    int64_t usedSeconds = 0;
    /// The same or, if later, when it was made, renamed or given other rights.
    int64_t touchedSeconds = 0;
};

/// Of what lies at `path`, a link being itself; nothing when there is nothing or it may not be looked at.
std::optional<FileUsage> usageOf(const std::string& path);

/// True when any user may put things into the folder at `path`, as into the system's folder for temporary files.
bool isSharedFolder(const std::string& path);

/// True when a process holds a lock (flock) on the folder at `path` itself, by which programs say that they need what
/// is in it. False for what is no folder.
bool isLockedFolder(const std::string& path);

} // namespace vh
