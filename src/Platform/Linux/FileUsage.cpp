#include "Platform/Linux/FileUsage.h"

#include "Platform/FileDescriptor.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace vh {

std::optional<FileUsage> usageAt(int folder, const char* name) {
    struct statx status {};
    const int flags = AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC | (*name == 0 ? AT_EMPTY_PATH : 0);
    if (::statx(folder, name, flags,
                STATX_TYPE | STATX_SIZE | STATX_ATIME | STATX_MTIME | STATX_CTIME | STATX_BTIME,
                &status) != 0)
        return std::nullopt;
    const int64_t read = S_ISDIR(status.stx_mode) ? 0 : status.stx_atime.tv_sec;
    const int64_t used = std::max<int64_t>(status.stx_mtime.tv_sec, read);
    const int64_t born = (status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime.tv_sec : 0;
    return FileUsage{static_cast<int64_t>(status.stx_size), used,
                     std::max({used, int64_t(status.stx_ctime.tv_sec), born})};
}

std::optional<FileUsage> usageOf(const std::string& path) {
    return usageAt(AT_FDCWD, path.c_str());
}

bool isSharedFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && (status.st_mode & S_IWOTH) != 0;
}

bool isLockedFolder(const std::string& path) {
    const FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    // Our own lock ends with the descriptor.
    return folder.get() >= 0 && ::flock(folder.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

} // namespace vh
