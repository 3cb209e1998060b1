#include "Platform/Posix/TreeCopy.h"

#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/CopyPiece.h"
#include "Platform/Posix/FolderStream.h"
#include "Platform/Posix/StatusType.h"

#include <array>
#include <unistd.h>

namespace vh {

namespace {

std::array<timespec, 2> timesOf(const struct stat& status) {
#ifdef __APPLE__
    return {status.st_atimespec, status.st_mtimespec};
#else
    return {status.st_atim, status.st_mtim};
#endif
}

[[noreturn]] void refuseSpecial(const std::string& path) {
    throw SystemError(path, "Not a file, folder or link, so it cannot be copied");
}

} // namespace

void TreeCopy::copyOwnerModeAndTimes(const FileDescriptor& to, const struct stat& status,
                                     const std::string& path) const {
    // Only an administrator may give files away; for everyone else the copy is their own.
    if (owner_ == Owner::kept && ::fchown(to.get(), status.st_uid, status.st_gid) != 0 && errno != EPERM &&
        errno != EINVAL)
        throwErrno(path);
    // A program that runs as its owner must not come to run as us.
    const mode_t kept = owner_ == Owner::kept ? 07777 : owner_ == Owner::us ? 01777 : 01755;
    if (::fchmod(to.get(), status.st_mode & kept) != 0 || ::futimens(to.get(), timesOf(status).data()) != 0)
        throwErrno(path);
}

void TreeCopy::copyFile(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                        const std::string& path) {
    const FileDescriptor from = openAt(fromFolder, fromName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!from)
        throwErrno(path);
    const struct stat status = statusOfOpen(from, path);
    if (!S_ISREG(status.st_mode))
        refuseSpecial(path);
    const FileDescriptor to = openAt(toFolder, toName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!to)
        throwErrno(path);
    while (const size_t copied = copyPiece(from, to, path)) {
        bytes_ += static_cast<int64_t>(copied);
        if (progress_)
            progress_(bytes_);
        cancel_.throwIfCancelled();
    }
    copyOwnerModeAndTimes(to, status, path);
    flush(to, path);
    ++files_;
}

void TreeCopy::copyFolder(int fromFolder, const std::string& fromName, int toFolder,
                          const std::string& toName, const std::string& path) {
    const FileDescriptor from = openAt(fromFolder, fromName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!from)
        throwErrno(path);
    const struct stat status = statusOfOpen(from, path);
    if (top_ == identityIn(status)) // moved or mounted into what is being copied
        throw SystemError(path, "The folder holds its own copy");
    if (::mkdirat(toFolder, toName.c_str(), 0700) != 0)
        throwErrno(path);
    const FileDescriptor to = openAt(toFolder, toName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!to)
        throwErrno(path);
    if (!top_)
        top_ = identityIn(statusOfOpen(to, path));
    FolderStream stream(from, path);
    while (const std::optional<std::string> name = stream.next())
        copy(from.get(), *name, to.get(), *name, joinPath(path, *name));
    copyOwnerModeAndTimes(to, status, path);
    flush(to, path);
}

void TreeCopy::copyLink(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                        const struct stat& status, const std::string& path) {
    const std::string target = readLinkAt(fromFolder, fromName);
    if (target.empty() || ::symlinkat(target.c_str(), toFolder, toName.c_str()) != 0)
        throwErrno(path);
    // A file system whose links have no times of their own loses nothing.
    if (::utimensat(toFolder, toName.c_str(), timesOf(status).data(), AT_SYMLINK_NOFOLLOW) != 0 &&
        errno != ENOTSUP && errno != ENOSYS && errno != EINVAL)
        throwErrno(path);
    ++files_;
}

void TreeCopy::copy(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                    const std::string& path) {
    cancel_.throwIfCancelled();
    struct stat status {};
    if (::fstatat(fromFolder, fromName.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        throwErrno(path);
    switch (typeOfMode(status.st_mode)) {
    case FileType::file:
        return copyFile(fromFolder, fromName, toFolder, toName, path);
    case FileType::folder:
        return copyFolder(fromFolder, fromName, toFolder, toName, path);
    case FileType::link:
        return copyLink(fromFolder, fromName, toFolder, toName, status, path);
    default:
        refuseSpecial(path);
    }
}

} // namespace vh
