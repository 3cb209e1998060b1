#include "Platform/Removal.h"

#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/FolderStream.h"
#include "Platform/Posix/MountOfFolder.h"
#include "Platform/Posix/RemovalAt.h"
#include "Platform/Posix/StatusType.h"
#include "Platform/Posix/UniqueName.h"

#include <unistd.h>

namespace vh {

namespace {

/// Folders held open one inside the other; what lies deeper is lifted up first.
constexpr int deepestDescent = 32;

void refuseUnlessExpected(const struct stat& status, const std::optional<FileIdentity>& expected,
                          const std::string& path) {
    if (expected && *expected != identityIn(status))
        throw SystemError(path, "Something else lies there by now");
}

/// One removal of a folder. Everything is named from an open folder, so that nothing moved meanwhile misleads it.
class FolderRemoval {
public:
    FolderRemoval(FileDescriptor top, uint64_t mount, const std::string& path)
        : top_(std::move(top)), mount_(mount), path_(path) {}

    void removeContents() { removeContentsOf(top_, path_, 0); }
    bool hasRemovedAny() const { return hasRemovedAny_; }

private:
    /// A pass may miss names while it removes others, so passes go on until one finds nothing.
    void removeContentsOf(const FileDescriptor& folder, const std::string& path, int depth) {
        FolderStream names(folder, path);
        for (bool found = true; found; names.rewind()) {
            found = false;
            while (const std::optional<std::string> name = names.next()) {
                removeEntry(folder, *name, path, depth);
                found = true;
            }
        }
    }

    void removeEntry(const FileDescriptor& folder, const std::string& name, const std::string& folderPath,
                     int depth) {
        // Unlinking a folder fails with EISDIR on Linux and with EPERM where POSIX is followed.
        if (::unlinkat(folder.get(), name.c_str(), 0) == 0) {
            hasRemovedAny_ = true;
            return;
        }
        if (errno == ENOENT)
            return;
        const int reason = errno;
        const std::string path = joinPath(folderPath, name);
        struct stat status {};
        if (::fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
            throwErrno(path);
        if (!S_ISDIR(status.st_mode) || (reason != EISDIR && reason != EPERM))
            throw SystemError(reason, path);
        removeFolder(folder, name, path, depth);
    }

    void removeFolder(const FileDescriptor& parent, const std::string& name, const std::string& path,
                      int depth);

    FileDescriptor top_;
    uint64_t mount_;
    const std::string& path_;
    bool hasRemovedAny_ = false;
};

/// A folder of ours that we may not even read is given the rights first.
FileDescriptor openFolder(const FileDescriptor& parent, const std::string& name, const std::string& path) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;
    FileDescriptor folder = openAt(parent.get(), name, flags);
    if (!folder && errno == EACCES &&
        ::fchmodat(parent.get(), name.c_str(), S_IRWXU, AT_SYMLINK_NOFOLLOW) == 0)
        folder = openAt(parent.get(), name, flags);
    if (!folder)
        throwErrno(path);
    return folder;
}

void makeEmptiable(const FileDescriptor& folder, const struct stat& status, const std::string& path) {
    if ((status.st_mode & S_IRWXU) != S_IRWXU && status.st_uid == ::geteuid() &&
        ::fchmod(folder.get(), (status.st_mode & 07777) | S_IRWXU) != 0)
        throwErrno(path);
}

void refuseOtherMount(const FileDescriptor& folder, const struct stat& status, uint64_t mount,
                      const std::string& path) {
    if (mountOfFolder(folder.get(), status) != mount)
        throw SystemError(path, "Another volume is mounted here");
}

void FolderRemoval::removeFolder(const FileDescriptor& parent, const std::string& name,
                                 const std::string& path, int depth) {
    if (::unlinkat(parent.get(), name.c_str(), AT_REMOVEDIR) == 0) {
        hasRemovedAny_ = true;
        return;
    }
    const FileDescriptor folder = openFolder(parent, name, path);
    const struct stat status = statusOfOpen(folder, path);
    refuseOtherMount(folder, status, mount_, path);
    makeEmptiable(folder, status, path);
    if (depth == deepestDescent) {
        if (::renameat(parent.get(), name.c_str(), top_.get(), uniquePartialName("deep").c_str()) != 0)
            throwErrno(path);
        return;
    }
    removeContentsOf(folder, path, depth + 1);
    if (::unlinkat(parent.get(), name.c_str(), AT_REMOVEDIR) != 0)
        throwErrno(path);
    hasRemovedAny_ = true;
}

} // namespace

void removePermanentlyAt(const FileDescriptor& parent, const std::string& name, const std::string& path,
                         const std::optional<FileIdentity>& expected) {
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos)
        throw SystemError(EINVAL, path);
    struct stat status {};
    if (::fstatat(parent.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        throwErrno(path);
    refuseUnlessExpected(status, expected, path);
    if (!S_ISDIR(status.st_mode)) {
        if (::unlinkat(parent.get(), name.c_str(), 0) != 0)
            throwErrno(path);
        return;
    }
    FileDescriptor top = openFolder(parent, name, path);
    const struct stat opened = statusOfOpen(top, path);
    refuseUnlessExpected(opened, expected, path);
    const uint64_t mount = mountOfFolder(parent.get(), statusOfOpen(parent, path));
    refuseOtherMount(top, opened, mount, path);
    makeEmptiable(top, opened, path);
    FolderRemoval removal(std::move(top), mount, path);
    try {
        removal.removeContents();
        if (::unlinkat(parent.get(), name.c_str(), AT_REMOVEDIR) != 0)
            throwErrno(path);
    } catch (const SystemError& error) {
        if (removal.hasRemovedAny())
            throw PartlyRemoved(error);
        throw;
    }
}

void removePermanently(const std::string& path, const std::optional<FileIdentity>& expected) {
    const PathParts parts = splitPath(path);
    if (parts.name.empty() || parts.name == "." || parts.name == "..")
        throw SystemError(EINVAL, path);
    removePermanentlyAt(openPath(parts.folder, openForLookup), parts.name, path, expected);
}

} // namespace vh
