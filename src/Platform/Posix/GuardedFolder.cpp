#include "Platform/GuardedFolder.h"

#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/CopyPiece.h"
#include "Platform/Posix/FolderStream.h"
#include "Platform/Posix/MountOfFolder.h"
#include "Platform/Posix/RemovalAt.h"
#include "Platform/Posix/StatusType.h"
#include "Platform/Posix/TreeCopy.h"

#include <algorithm>
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
            throw LinkRefused(path);
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

GuardedFolder::OpenFile GuardedFolder::openFile(const std::string& name) const {
    const std::string path = joinPath(path_, name);
    FileDescriptor file = openAt(folder_.get(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!file && errno == ELOOP)
        throw LinkRefused(path);
    if (!file)
        throwErrno(path);
    const FileStatus status = fileStatus(statusOfOpen(file, path));
    if (status.type != FileType::file)
        throw SystemError(path, "Not a file");
    return {std::move(file), status};
}

void GuardedFolder::addFile(const std::string& name, const OpenFile& from) const {
    const std::string path = joinPath(path_, name);
    const FileDescriptor file = openAt(folder_.get(), name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!file)
        throwErrno(path);
    while (copyPiece(from.descriptor, file, path) > 0) {
    }
    if (::fchmod(file.get(), 0644) != 0)
        throwErrno(path);
    flush(file, path);
}

void GuardedFolder::addCopy(const std::string& name, const GuardedFolder& from,
                            const std::string& fromName) const {
    TreeCopy(TreeCopy::Owner::usAlone)
        .copy(from.descriptor(), fromName, descriptor(), name, joinPath(from.path_, fromName));
}

std::string GuardedFolder::startOfFile(const std::string& name, size_t bytes) const {
    std::string start(bytes, '\0');
    try {
        const OpenFile file = openFile(name);
        const ssize_t got = retried([&] { return ::pread(file.descriptor.get(), start.data(), bytes, 0); });
        start.resize(got > 0 ? static_cast<size_t>(got) : 0);
        return start;
    } catch (const SystemError&) {
        return {};
    }
}

std::vector<std::string> GuardedFolder::names() const {
    std::vector<std::string> names;
    FolderStream stream(folder_, path_);
    while (std::optional<std::string> name = stream.next())
        names.push_back(std::move(*name));
    std::ranges::sort(names);
    return names;
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
