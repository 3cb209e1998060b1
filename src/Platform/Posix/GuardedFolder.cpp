#include "Platform/GuardedFolder.h"

#include "Platform/Posix/Calls.h"
#include "Platform/Posix/FolderStream.h"
#include "Platform/Posix/MountOfFolder.h"
#include "Platform/Posix/PathParts.h"
#include "Platform/Posix/RemovalAt.h"
#include "Platform/Posix/StatusType.h"

#include <deque>
#include <unistd.h>

namespace vh {

namespace {

constexpr int mostLinks = 40;
/// Each holds a descriptor or two.
constexpr int deepestSum = 128;

std::deque<std::string> componentsOf(std::string_view path) {
    std::deque<std::string> components;
    while (!path.empty()) {
        const size_t slash = std::min(path.find('/'), path.size());
        if (slash > 0 && path.substr(0, slash) != ".")
            components.emplace_back(path.substr(0, slash));
        path.remove_prefix(std::min(slash + 1, path.size()));
    }
    return components;
}

bool isAdministratorsAlone(const struct stat& folder) {
    return folder.st_uid == 0 && (folder.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::optional<struct stat> statusAt(int folder, const std::string& name, const std::string& path) {
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return status;
    if (errno != ENOENT)
        throwErrno(path);
    return std::nullopt;
}

FileStatus fileStatus(const struct stat& status) {
    return {typeOfMode(status.st_mode), status.st_size, status.st_mtime, status.st_uid, identityIn(status)};
}

/// Sums one tree, each folder named from the one that holds it.
class Sum {
public:
    Sum(uint64_t mount, const CancelToken& cancel) : mount_(mount), cancel_(cancel) {}

    void add(const FileDescriptor& folder, const std::string& path, int depth) {
        FolderStream names(folder, path);
        while (const std::optional<std::string> name = names.next()) {
            cancel_.throwIfCancelled();
            struct stat status {};
            // What another user mounts there does not let even the administrator look.
            if (::fstatat(folder.get(), name->c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            if (S_ISREG(status.st_mode))
                bytes_ += status.st_size;
            else if (S_ISDIR(status.st_mode))
                addFolder(folder, *name, joinPath(path, *name), depth + 1);
        }
    }
    int64_t bytes() const { return bytes_; }

private:
    void addFolder(const FileDescriptor& parent, const std::string& name, const std::string& path,
                   int depth) {
        if (depth > deepestSum)
            throw SystemError(path, "Too many folders lie one inside the other");
        const FileDescriptor folder = openAt(parent.get(), name, openForLookup | O_NOFOLLOW);
        if (!folder && (errno == ENOENT || errno == ENOTDIR || errno == ELOOP))
            return;
        if (!folder)
            throwErrno(path);
        if (mountOfFolder(folder.get(), statusOfOpen(folder, path)) == mount_)
            add(folder, path, depth);
    }

    uint64_t mount_;
    const CancelToken& cancel_;
    int64_t bytes_ = 0;
};

} // namespace

GuardedFolder GuardedFolder::step(const std::string& name) const {
    std::string path = joinPath(path_, name);
    FileDescriptor next = openAt(folder_.get(), name, openForLookup | O_NOFOLLOW);
    if (!next) {
        const int reason = errno;
        const auto status = statusAt(folder_.get(), name, path);
        if (status && S_ISLNK(status->st_mode))
            throw SystemError(path, "A link that anybody may have put there is not followed");
        throw SystemError(reason, path);
    }
    return {std::move(next), std::move(path)};
}

GuardedFolder GuardedFolder::open(const std::string& path) {
    if (!path.starts_with('/'))
        throw SystemError(EINVAL, path);
    GuardedFolder folder(openPath("/", openForLookup), "/");
    std::deque<std::string> rest = componentsOf(path);
    for (int links = 0; !rest.empty();) {
        const std::string name = std::move(rest.front());
        rest.pop_front();
        if (name == "..") { // of a link; what is open is a real folder, so this is its real parent
            folder = {openAt(folder.descriptor(), "..", openForLookup), splitPath(folder.path_).folder};
            if (!folder.folder_)
                throwErrno(path);
            continue;
        }
        const auto status = statusAt(folder.descriptor(), name, joinPath(folder.path_, name));
        if (!status || !S_ISLNK(status->st_mode) ||
            !isAdministratorsAlone(statusOfOpen(folder.folder_, folder.path_))) {
            folder = folder.step(name);
            continue;
        }
        const std::string target = readLinkAt(folder.descriptor(), name);
        if (target.empty() || ++links > mostLinks)
            throw SystemError(ELOOP, path);
        if (target.starts_with('/'))
            folder = {openPath("/", openForLookup), "/"};
        const std::deque<std::string> inserted = componentsOf(target);
        rest.insert(rest.begin(), inserted.begin(), inserted.end());
    }
    return folder;
}

GuardedFolder GuardedFolder::below(std::string_view relative) const {
    GuardedFolder folder(openAt(folder_.get(), ".", openForLookup), path_);
    if (!folder.folder_)
        throwErrno(path_);
    for (const std::string& name : componentsOf(relative)) {
        if (name == "..")
            throw SystemError(EINVAL, joinPath(path_, relative));
        folder = folder.step(name);
    }
    return folder;
}

GuardedFolder GuardedFolder::made(std::string_view relative) const {
    GuardedFolder folder = below("");
    for (const std::string& name : componentsOf(relative)) {
        if (name == "..")
            throw SystemError(EINVAL, joinPath(path_, relative));
        if (::mkdirat(folder.descriptor(), name.c_str(), 0755) != 0 && errno != EEXIST)
            throwErrno(joinPath(folder.path_, name));
        folder = folder.step(name);
    }
    return folder;
}

FileStatus GuardedFolder::status() const {
    return fileStatus(statusOfOpen(folder_, path_));
}

bool GuardedFolder::isShared() const {
    return (statusOfOpen(folder_, path_).st_mode & S_IWOTH) != 0;
}

bool GuardedFolder::isOnVolumeOf(const GuardedFolder& other) const {
    return mountOfFolder(descriptor(), statusOfOpen(folder_, path_)) ==
           mountOfFolder(other.descriptor(), statusOfOpen(other.folder_, other.path_));
}

std::optional<FileStatus> GuardedFolder::statusOf(const std::string& name) const {
    const auto status = statusAt(folder_.get(), name, joinPath(path_, name));
    return status ? std::optional(fileStatus(*status)) : std::nullopt;
}

FileDescriptor GuardedFolder::openFile(const std::string& name) const {
    const std::string path = joinPath(path_, name);
    FileDescriptor file = openAt(folder_.get(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!file)
        throwErrno(path);
    if (!S_ISREG(statusOfOpen(file, path).st_mode))
        throw SystemError(path, "Not a file");
    return file;
}

int64_t GuardedFolder::byteSize(const CancelToken& cancel) const {
    Sum sum(mountOfFolder(descriptor(), statusOfOpen(folder_, path_)), cancel);
    sum.add(folder_, path_, 0);
    return sum.bytes();
}

void GuardedFolder::remove(const std::string& name, const std::optional<FileIdentity>& expected) const {
    removePermanentlyAt(folder_, name, joinPath(path_, name), expected);
}

} // namespace vh
