#include "Platform/FileMetadata.h"

#include "Platform/Posix/Calls.h"
#include "Platform/Posix/ExtendedAttributes.h"
#include "Platform/Posix/StatusMetadata.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <tuple>
#include <unistd.h>

namespace vh {

namespace {

FileMetadata::Time timeOf(const timespec& time) {
    return {time.tv_sec, time.tv_nsec};
}

timespec timeSpecOf(const FileMetadata::Time& time) {
    return {static_cast<time_t>(time.seconds), static_cast<decltype(timespec::tv_nsec)>(time.nanoseconds)};
}

/// The system's own labels are given by its policy, not by who copies.
bool belongsToSystem(const std::string& attribute) {
    return attribute.starts_with("security.") && attribute != "security.capability";
}

/// Who may not give a file away, or keeps no such thing, has not been refused anything that was his.
bool isBeyondUs(int code) {
    return code == EPERM || code == EINVAL || code == ENOTSUP || code == ENOSYS;
}

/// A folder may give what is made in it access lists of its own, which the original does not have.
void removeInheritedLists(const FileDescriptor& file, const FileMetadata& metadata) {
    for (const std::string& name : attributeNamesOf(file.get()))
        if (isAccessList(name) &&
            std::ranges::none_of(metadata.attributes, [&](const auto& each) { return each.first == name; }))
            removeAttribute(file.get(), name);
}

} // namespace

FileMetadata metadataIn(const struct stat& status) {
#ifdef __APPLE__
    const timespec accessed = status.st_atimespec, modified = status.st_mtimespec;
#else
    const timespec accessed = status.st_atim, modified = status.st_mtim;
#endif
    return {status.st_uid,    status.st_gid,    static_cast<uint32_t>(status.st_mode & 07777),
            timeOf(accessed), timeOf(modified), {}};
}

FileState stateIn(const struct stat& status) {
#ifdef __APPLE__
    const timespec modified = status.st_mtimespec, changed = status.st_ctimespec;
#else
    const timespec modified = status.st_mtim, changed = status.st_ctim;
#endif
    const auto nanoseconds = [](const timespec& time) {
        return int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
    };
    return {status.st_ino, status.st_size, nanoseconds(modified), nanoseconds(changed)};
}

FileMetadata metadataOf(const FileDescriptor& file, const std::string& path) {
    FileMetadata metadata = metadataIn(statusOfOpen(file, path));
    metadata.attributes = attributesOf(file.get());
    return metadata;
}

FileMetadata metadataOfFolder(const std::string& path) {
    return metadataOf(openPath(path, O_RDONLY | O_DIRECTORY), path);
}

void applyToLink(int folder, const std::string& name, const FileMetadata& metadata) {
    const std::array<timespec, 2> times{timeSpecOf(metadata.accessed), timeSpecOf(metadata.modified)};
    // A link without its owner or time still leads where it shall.
    std::ignore = ::fchownat(folder, name.c_str(), metadata.owner, metadata.group, AT_SYMLINK_NOFOLLOW);
    std::ignore = ::utimensat(folder, name.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
}

RefusedMetadata applyMetadata(const FileDescriptor& file, const FileMetadata& metadata, Inherited inherited) {
    using What = RefusedPart::What;
    RefusedMetadata refused;
    const auto refuse = [&](What what, const std::string& attribute = {}) {
        refused.push_back({what, attribute, errno});
    };
    struct stat now {};
    const bool isKnown = ::fstat(file.get(), &now) == 0; // each change costs more than to look
    const bool hasOwner = isKnown && now.st_uid == metadata.owner && now.st_gid == metadata.group;
    const bool isOwned = hasOwner || ::fchown(file.get(), metadata.owner, metadata.group) == 0;
    if (!isOwned && !isBeyondUs(errno))
        refuse(What::owner);
    // A change of owner takes these bits and attributes away, so they come after it.
    const uint32_t mode = isOwned ? metadata.mode : metadata.mode & ~uint32_t{S_ISUID | S_ISGID};
    if (!(hasOwner && (now.st_mode & 07777) == mode) &&
        ::fchmod(file.get(), static_cast<mode_t>(mode)) != 0 && !isBeyondUs(errno))
        refuse(What::mode);
    if (inherited == Inherited::lists)
        removeInheritedLists(file, metadata);
    for (const auto& [name, value] : metadata.attributes)
        if (!belongsToSystem(name) && !setAttribute(file.get(), name, value) && errno != ENOTSUP)
            refuse(What::attribute, name);
    const std::array<timespec, 2> times{timeSpecOf(metadata.accessed), timeSpecOf(metadata.modified)};
    if (::futimens(file.get(), times.data()) != 0)
        refuse(What::times);
    return refused;
}

} // namespace vh
