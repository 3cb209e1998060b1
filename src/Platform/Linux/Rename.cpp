#include "Platform/Posix/Rename.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vh {

namespace {

/// An empty folder made by us reserves the name: a folder may be renamed over it as long as it is empty.
bool renameFolderOverReservation(int fromFolder, const char* from, int toFolder, const char* to) {
    if (::mkdirat(toFolder, to, 0700) != 0)
        return false;
    if (::renameat(fromFolder, from, toFolder, to) == 0)
        return true;
    const int reason = errno;
    ::unlinkat(toFolder, to, AT_REMOVEDIR);
    errno = reason;
    return false;
}

bool linkThenUnlink(int fromFolder, const char* from, int toFolder, const char* to) {
    if (::linkat(fromFolder, from, toFolder, to, 0) != 0)
        return false;
    if (::unlinkat(fromFolder, from, 0) == 0)
        return true;
    const int reason = errno;
    ::unlinkat(toFolder, to, 0);
    errno = reason;
    return false;
}

bool renameIfFree(int fromFolder, const char* from, int toFolder, const char* to) {
    struct stat status {};
    if (::fstatat(toFolder, to, &status, AT_SYMLINK_NOFOLLOW) == 0) {
        errno = EEXIST;
        return false;
    }
    return errno == ENOENT && ::renameat(fromFolder, from, toFolder, to) == 0;
}

} // namespace

bool renameWithoutReplacing(int fromFolder, const std::string& from, int toFolder, const std::string& to) {
    if (::renameat2(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    struct stat status {};
    if (::fstatat(fromFolder, from.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return false;
    if (S_ISDIR(status.st_mode))
        return renameFolderOverReservation(fromFolder, from.c_str(), toFolder, to.c_str());
    if (linkThenUnlink(fromFolder, from.c_str(), toFolder, to.c_str()))
        return true;
    const bool cannotLink = errno == EPERM || errno == ENOTSUP || errno == EMLINK;
    return cannotLink && renameIfFree(fromFolder, from.c_str(), toFolder, to.c_str());
}

} // namespace vh
