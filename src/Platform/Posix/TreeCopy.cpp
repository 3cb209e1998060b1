#include "Platform/Posix/TreeCopy.h"

#include "Platform/FileMetadata.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/CopyPiece.h"
#include "Platform/Posix/FolderStream.h"
#include "Platform/Posix/StatusMetadata.h"
#include "Platform/Posix/StatusType.h"

#include <unistd.h>

namespace vh {

namespace {

[[noreturn]] void refuseSpecial(const std::string& path) {
    throw SystemError(path, "Not a file, folder or link, so it cannot be copied");
}

} // namespace

void TreeCopy::copyMetadata(const FileDescriptor& from, const FileDescriptor& to,
                            const std::string& path) const {
    FileMetadata metadata = metadataOf(from, path);
    if (owner_ == Owner::usAlone) {
        const FileMetadata ours = metadataOf(to, path);
        metadata.owner = ours.owner;
        metadata.group = ours.group;
        metadata.mode &= 01755; // a program that runs as its owner must not come to run as us
        metadata.attributes.clear();
    }
    // A volume that has no such attributes keeps the file; its rights and times it must keep.
    for (const RefusedPart& refused : applyMetadata(to, metadata))
        if (refused.what != RefusedPart::What::attribute)
            throw SystemError(refused.code, path);
}

void TreeCopy::copyFile(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                        const std::string& path) {
    const FileDescriptor from = openAt(fromFolder, fromName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!from)
        throwErrno(path);
    if (!S_ISREG(statusOfOpen(from, path).st_mode))
        refuseSpecial(path);
    const FileDescriptor to = openAt(toFolder, toName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!to)
        throwErrno(path);
    while (copyPiece(from, to, path) > 0) {
    }
    copyMetadata(from, to, path);
    flush(to, path);
}

void TreeCopy::copyFolder(int fromFolder, const std::string& fromName, int toFolder,
                          const std::string& toName, const std::string& path) {
    const FileDescriptor from = openAt(fromFolder, fromName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!from)
        throwErrno(path);
    if (top_ == identityIn(statusOfOpen(from, path))) // moved or mounted into what is being copied
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
    copyMetadata(from, to, path);
    flush(to, path);
}

void TreeCopy::copyLink(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                        const struct stat& status, const std::string& path) {
    const std::string target = readLinkAt(fromFolder, fromName);
    if (target.empty() || ::symlinkat(target.c_str(), toFolder, toName.c_str()) != 0)
        throwErrno(path);
    FileMetadata metadata = metadataIn(status);
    if (owner_ == Owner::usAlone) {
        metadata.owner = ::geteuid();
        metadata.group = ::getegid();
    }
    applyToLink(toFolder, toName, metadata);
}

void TreeCopy::copy(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                    const std::string& path) {
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
