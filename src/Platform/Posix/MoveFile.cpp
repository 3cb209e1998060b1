#include "Platform/Files.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/FolderStream.h"
#include "Platform/Posix/PathParts.h"
#include "Platform/Posix/StatusType.h"
#include "Platform/Posix/UniqueName.h"
#include "Platform/Removal.h"

#include <unistd.h>
#include <vector>

namespace vh {

namespace {

void copyItem(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
              const std::string& path);

void copyOwnerModeAndTimes(const FileDescriptor& to, const struct stat& status, const std::string& path) {
    // Only an administrator may give files away; for everyone else the copy is their own.
    if (::fchown(to.get(), status.st_uid, status.st_gid) != 0 && errno != EPERM && errno != EINVAL)
        throwErrno(path);
    if (::fchmod(to.get(), status.st_mode & 07777) != 0)
        throwErrno(path);
#ifdef __APPLE__
    const timespec times[2] = {status.st_atimespec, status.st_mtimespec};
#else
    const timespec times[2] = {status.st_atim, status.st_mtim};
#endif
    if (::futimens(to.get(), times) != 0)
        throwErrno(path);
}

void copyBytes(const FileDescriptor& from, const FileDescriptor& to, const std::string& path) {
    std::vector<char> block(1u << 20);
    for (;;) {
        const ssize_t got = retried([&] { return ::read(from.get(), block.data(), block.size()); });
        if (got < 0)
            throwErrno(path);
        if (got == 0)
            return;
        writeAll(to, {block.data(), static_cast<size_t>(got)}, path);
    }
}

void copyRegularFile(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                     const std::string& path) {
    const FileDescriptor from = openAt(fromFolder, fromName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!from)
        throwErrno(path);
    const struct stat status = statusOfOpen(from, path);
    const FileDescriptor to = openAt(toFolder, toName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!to)
        throwErrno(path);
    copyBytes(from, to, path);
    copyOwnerModeAndTimes(to, status, path);
    flush(to, path);
}

void copyFolder(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                const std::string& path) {
    const FileDescriptor from = openAt(fromFolder, fromName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!from || ::mkdirat(toFolder, toName.c_str(), 0700) != 0)
        throwErrno(path);
    const FileDescriptor to = openAt(toFolder, toName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!to)
        throwErrno(path);
    FolderStream stream(from, path);
    while (const std::optional<std::string> name = stream.next())
        copyItem(from.get(), *name, to.get(), *name, joinPath(path, *name));
    copyOwnerModeAndTimes(to, statusOfOpen(from, path), path);
    flush(to, path);
}

void copyItem(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
              const std::string& path) {
    struct stat status {};
    if (::fstatat(fromFolder, fromName.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        throwErrno(path);
    switch (typeOfMode(status.st_mode)) {
    case FileType::file:
        return copyRegularFile(fromFolder, fromName, toFolder, toName, path);
    case FileType::folder:
        return copyFolder(fromFolder, fromName, toFolder, toName, path);
    case FileType::link: {
        const std::string target = readLinkAt(fromFolder, fromName);
        if (target.empty() || ::symlinkat(target.c_str(), toFolder, toName.c_str()) != 0)
            throwErrno(path);
        return;
    }
    default:
        throw SystemError(path, "Not a file, folder or link, so it cannot move to another volume");
    }
}

/// The failure that led here is the one to report, whatever becomes of this.
void removeLeftover(const std::string& path) {
    try {
        removePermanently(path);
    } catch (const SystemError&) {
    }
}

/// The copy appears under its name only when it is whole and on the disk; only then the original goes.
void moveAcrossVolumes(const std::string& from, const std::string& to) {
    const PathParts source = splitPath(from);
    const PathParts target = splitPath(to);
    const FileDescriptor fromFolder = openPath(source.folder, openForLookup);
    const FileDescriptor toFolder = openPath(target.folder, O_RDONLY | O_DIRECTORY);
    const std::string partial = uniquePartialName(target.name);
    try {
        copyItem(fromFolder.get(), source.name, toFolder.get(), partial, from);
        if (::renameat(toFolder.get(), partial.c_str(), toFolder.get(), target.name.c_str()) != 0)
            throwErrno(to);
    } catch (...) {
        removeLeftover(joinPath(target.folder, partial));
        throw;
    }
    flush(toFolder, target.folder);
    removePermanently(from);
}

} // namespace

void moveFile(const std::string& from, const std::string& to) {
    if (::rename(from.c_str(), to.c_str()) == 0)
        return;
    if (errno != EXDEV)
        throwErrno(from);
    moveAcrossVolumes(from, to);
}

} // namespace vh
