#include "Platform/Files.h"

#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/StatusType.h"

#include <unistd.h>

namespace vh {

std::string readFile(const std::string& path) {
    return readAll(openPath(path, O_RDONLY), path);
}

std::optional<std::string> readFileIfPresent(const std::string& path) {
    const FileDescriptor file = openAt(AT_FDCWD, path, O_RDONLY);
    if (!file && (errno == ENOENT || errno == ENOTDIR))
        return std::nullopt;
    if (!file)
        throwErrno(path);
    return readAll(file, path);
}

void makeFolders(const std::string& path) {
    if (::mkdir(path.c_str(), 0700) == 0)
        return;
    const PathParts parts = splitPath(path);
    if (errno == ENOENT && !parts.name.empty() && parts.folder != ".") {
        makeFolders(parts.folder);
        if (::mkdir(path.c_str(), 0700) == 0)
            return;
    }
    // Somebody may have made it meanwhile, and a read-only volume refuses even what exists.
    const int reason = errno;
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        throw SystemError(reason, path);
    if (!S_ISDIR(status.st_mode))
        throw SystemError(ENOTDIR, path);
}

std::optional<FileStatus> statusOf(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        return std::nullopt;
    return FileStatus{typeOfMode(status.st_mode), status.st_size, status.st_mtime, status.st_uid,
                      identityIn(status)};
}

bool isWritable(const std::string& path) {
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

} // namespace vh
