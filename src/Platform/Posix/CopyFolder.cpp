#include "Platform/CopyFolder.h"

#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/ExtendedAttributes.h"
#include "Platform/Posix/Rename.h"
#include "Platform/Posix/StatusMetadata.h"
#include "Platform/Posix/StatusType.h"
#include "Platform/Posix/UniqueName.h"

#include <algorithm>
#include <sys/statvfs.h>
#include <unistd.h>

namespace vh {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY;

} // namespace

CopyFolder::CopyFolder(const std::string& path) : CopyFolder(path, std::string(vh::partialSuffix)) {}

CopyFolder::CopyFolder(const std::string& path, std::string suffix)
    : path_(path), partialSuffix_(std::move(suffix)),
      top_(std::make_shared<FileDescriptor>(openPath(path, folderFlags))),
      device_(statusOfOpen(*top_, path).st_dev) {}

int64_t CopyFolder::freeBytes() const {
    struct statvfs space {};
    if (::fstatvfs(top_->get(), &space) != 0)
        throwErrno(path_);
    return static_cast<int64_t>(space.f_bavail) * static_cast<int64_t>(space.f_frsize);
}

bool CopyFolder::isCaseBlind() {
    // One name for all, so that the next run takes away what a killed one left.
    const std::string probe = ".case" + partialSuffix_, inOtherCase = ".CASE" + partialSuffix_;
    for (;;) {
        const FileDescriptor file = openAt(top_->get(), probe, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
        if (!file)
            throwErrno(joinPath(path_, probe));
        const bool isBlind = at(inOtherCase).has_value();
        // Somebody else, who tried it out as well, may have taken it away before we looked.
        const bool isGone = !isBlind && statusOfOpen(file, path_).st_nlink == 0;
        ::unlinkat(top_->get(), probe.c_str(), 0);
        if (!isGone)
            return isBlind;
    }
}

bool CopyFolder::isStillThere() const {
    struct stat now {};
    return ::stat(path_.c_str(), &now) == 0 && identityIn(now) == identityIn(statusOfOpen(*top_, path_));
}

std::shared_ptr<FileDescriptor> CopyFolder::open(std::string_view relative) const {
    std::shared_ptr<FileDescriptor> folder = top_;
    for (std::string_view rest = relative; !rest.empty();) {
        const size_t slash = rest.find('/');
        const std::string name(rest.substr(0, slash));
        auto next = std::make_shared<FileDescriptor>(openAt(folder->get(), name, folderFlags | O_NOFOLLOW));
        if (!*next)
            throwErrno(joinPath(path_, relative));
        folder = std::move(next);
        rest.remove_prefix(slash == std::string_view::npos ? rest.size() : slash + 1);
    }
    return folder;
}

const std::shared_ptr<FileDescriptor>& CopyFolder::parentOf(std::string_view relative) {
    const size_t slash = relative.rfind('/');
    const std::string_view name = slash == std::string_view::npos ? "" : relative.substr(0, slash);
    if (!parent_ || parentName_ != name) {
        parent_ = open(name);
        parentGivesLists_ = givesAccessLists(parent_->get());
        parentName_ = name;
    }
    return parent_;
}

bool CopyFolder::makeFolder(const std::string& relative, unsigned mode) {
    bool isNew = false;
    for (size_t slash = 0; slash != std::string::npos;) {
        slash = relative.find('/', slash == 0 ? 0 : slash + 1);
        const std::string upTo = relative.substr(0, slash);
        const std::string name = splitPath(upTo).name;
        isNew = ::mkdirat(parentOf(upTo)->get(), name.c_str(), static_cast<mode_t>(mode)) == 0;
        if (!isNew && errno != EEXIST)
            throwErrno(joinPath(path_, upTo));
    }
    open(relative); // a file or a link in its place is no folder
    return isNew;
}

RefusedMetadata CopyFolder::applyToFolder(const std::string& relative, const FileMetadata& metadata) {
    return applyMetadata(*open(relative), metadata);
}

std::optional<FileIdentity> CopyFolder::at(const std::string& relative) {
    struct stat status {};
    if (::fstatat(parentOf(relative)->get(), splitPath(relative).name.c_str(), &status,
                  AT_SYMLINK_NOFOLLOW) == 0)
        return identityIn(status);
    if (errno != ENOENT)
        throwErrno(joinPath(path_, relative));
    return std::nullopt;
}

std::optional<FileState> CopyFolder::fileState(const std::string& relative) {
    struct stat status {};
    if (::fstatat(parentOf(relative)->get(), splitPath(relative).name.c_str(), &status,
                  AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISREG(status.st_mode))
        return stateIn(status);
    return std::nullopt;
}

PartialFile CopyFolder::create(const std::string& relative, unsigned mode, Folder folder) {
    return PartialFile({parentOf(relative), splitPath(relative).name, partialSuffix_,
                        joinPath(path_, relative), parentGivesLists_, folder == Folder::madeJustNow},
                       mode);
}

PartialFile CopyFolder::create(const std::string& relative, const FileMetadata& metadata, Folder folder) {
    // What will be ours as it is needs no second look; a list may say less than the mode does.
    const bool staysOurs =
        metadata.owner == ::geteuid() && metadata.group == ::getegid() &&
        std::ranges::none_of(metadata.attributes, [](const auto& each) { return isAccessList(each.first); });
    return create(relative, staysOurs ? metadata.mode & 0777 : 0600, folder);
}

FileMetadata CopyFolder::metadataOfFolder(const std::string& relative) {
    return metadataOf(*open(relative), joinPath(path_, relative));
}

SourceFile CopyFolder::source(const std::string& relative, SourceFile::Attributes attributes) {
    return {*parentOf(relative), splitPath(relative).name, joinPath(path_, relative), attributes};
}

std::optional<CopyLink> CopyFolder::link(const std::string& relative) {
    const int folder = parentOf(relative)->get();
    const std::string name = splitPath(relative).name;
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        throwErrno(joinPath(path_, relative));
    if (!S_ISLNK(status.st_mode))
        return std::nullopt;
    CopyLink link{readLinkAt(folder, name), metadataIn(status)};
    if (link.target.empty())
        throwErrno(joinPath(path_, relative));
    return link;
}

bool CopyFolder::isFolder(const std::string& relative) {
    struct stat status {};
    return ::fstatat(parentOf(relative)->get(), splitPath(relative).name.c_str(), &status,
                     AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

void CopyFolder::placeLink(const std::string& relative, const CopyLink& link, PartialFile::Place how) {
    const int folder = parentOf(relative)->get();
    const std::string name = splitPath(relative).name, partial = partialNameOf(name, partialSuffix_);
    const auto make = [&] {
        return ::symlinkat(link.target.c_str(), folder, partial.c_str()) == 0;
    };
    if (!make() && (errno != EEXIST || ::unlinkat(folder, partial.c_str(), 0) != 0 || !make()))
        throwErrno(joinPath(path_, relative));
    applyToLink(folder, partial, link.metadata);
    const bool isDone = how == PartialFile::Place::free
                            ? renameWithoutReplacing(folder, partial, folder, name)
                            : ::renameat(folder, partial.c_str(), folder, name.c_str()) == 0;
    if (!isDone) {
        const int reason = errno;
        ::unlinkat(folder, partial.c_str(), 0);
        throw SystemError(reason, joinPath(path_, relative));
    }
}

std::string CopyFolder::freeName(const std::string& relative) {
    const size_t slash = relative.rfind('/');
    const size_t name = slash == std::string::npos ? 0 : slash + 1;
    for (int number = 2;; ++number)
        if (std::string free = relative.substr(0, name) + numberedName(relative.substr(name), number);
            !at(free))
            return free;
}

} // namespace vh
