#include "Platform/Files.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/UniqueName.h"

#include <unistd.h>

namespace vh {

namespace {

/// Where a chain of links at `path` ends, which need not exist: a person's linked file stays linked.
std::string linkedFile(std::string path) {
    constexpr int mostLinks = 40;
    for (int links = 0; links < mostLinks; ++links) {
        const std::string target = readLinkAt(AT_FDCWD, path);
        if (target.empty() && (errno == EINVAL || errno == ENOENT))
            return path;
        if (target.empty())
            throwErrno(path);
        path = target.starts_with('/') ? target : joinPath(splitPath(path).folder, target);
    }
    throw SystemError(ELOOP, path);
}

/// A file beside its target that vanishes again unless it was renamed over it.
class PartialFile {
public:
    PartialFile(const FileDescriptor& folder, const std::string& name, const std::string& path, mode_t mode)
        : folder_(folder), name_(uniquePartialName(name)), path_(path),
          file_(openAt(folder.get(), name_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode)) {
        if (!file_)
            throwErrno(path_);
    }
    ~PartialFile() {
        if (!renamed_)
            ::unlinkat(folder_.get(), name_.c_str(), 0);
    }

    /// Owner first, since a change of owner clears mode bits. Only an administrator may keep another's file theirs.
    void takeOver(const struct stat& old) {
        if ((old.st_uid != ::geteuid() || old.st_gid != ::getegid()) &&
            ::fchown(file_.get(), old.st_uid, old.st_gid) != 0 && errno != EPERM)
            throwErrno(path_);
        if (::fchmod(file_.get(), old.st_mode & 07777) != 0)
            throwErrno(path_);
    }

    void write(std::string_view bytes) {
        writeAll(file_, bytes, path_);
        flush(file_, path_);
        // A network file system may report a failed write only here.
        if (::close(file_.release()) != 0 && errno != EINTR)
            throwErrno(path_);
    }

    void renameTo(const std::string& name) {
        if (::renameat(folder_.get(), name_.c_str(), folder_.get(), name.c_str()) != 0)
            throwErrno(path_);
        renamed_ = true;
    }

private:
    const FileDescriptor& folder_;
    std::string name_;
    const std::string& path_;
    FileDescriptor file_;
    bool renamed_ = false;
};

} // namespace

void writeFileAtomically(const std::string& path, std::string_view bytes, unsigned mode) {
    const PathParts target = splitPath(linkedFile(path));
    const FileDescriptor folder = openPath(target.folder, O_RDONLY | O_DIRECTORY);
    struct stat old {};
    const bool exists = ::fstatat(folder.get(), target.name.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0;
    if (!exists && errno != ENOENT)
        throwErrno(path);
    if (exists && !S_ISREG(old.st_mode))
        throw S_ISDIR(old.st_mode) ? SystemError(EISDIR, path) : SystemError(path, "Not a regular file");

    PartialFile partial(folder, target.name, path, static_cast<mode_t>(exists ? 0600 : mode));
    if (exists)
        partial.takeOver(old);
    partial.write(bytes);
    partial.renameTo(target.name);
    flush(folder, target.folder);
}

} // namespace vh
