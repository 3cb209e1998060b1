#include "Platform/CopyItem.h"

#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/Rename.h"
#include "Platform/Posix/StatusType.h"
#include "Platform/Posix/TreeCopy.h"
#include "Platform/Posix/UniqueName.h"

namespace vh {

namespace {

/// Up from the destination by the system's own parents, so that no link or second mount hides the folder above it.
void refuseToHoldItself(const struct stat& source, const FileDescriptor& destination,
                        const std::string& path) {
    const FileIdentity forbidden = identityIn(source);
    FileIdentity last;
    FileDescriptor folder = openAt(destination.get(), ".", openForLookup);
    while (folder) {
        const FileIdentity here = identityIn(statusOfOpen(folder, path));
        if (here == forbidden)
            throw SystemError(path, "The folder cannot be copied into itself");
        if (here == last)
            return;
        last = here;
        folder = openAt(folder.get(), "..", openForLookup);
    }
    throwErrno(path);
}

std::string placeUnderFreeName(const FileDescriptor& folder, const std::string& partial,
                               const std::string& name, bool isFolder, const std::string& path) {
    constexpr int mostNumbers = 10'000;
    for (int number = 1; number <= mostNumbers; ++number) {
        std::string free = numberedName(name, isFolder, number);
        if (renameWithoutReplacing(folder.get(), partial, folder.get(), free))
            return free;
        if (errno != EEXIST)
            throwErrno(path);
    }
    throw SystemError(EEXIST, path);
}

} // namespace

CopiedItem copyItem(const std::string& from, const std::string& folder, const CancelToken& cancel,
                    const std::function<void(int64_t bytes)>& progress) {
    const PathParts source = splitPath(from);
    if (source.name.empty() || source.name == "." || source.name == "..")
        throw SystemError(EINVAL, from);
    const FileDescriptor fromFolder = openPath(source.folder, openForLookup);
    const FileDescriptor toFolder = openPath(folder, O_RDONLY | O_DIRECTORY);
    struct stat status {};
    if (::fstatat(fromFolder.get(), source.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        throwErrno(from);
    if (S_ISDIR(status.st_mode))
        refuseToHoldItself(status, toFolder, from);

    const std::string partial = uniquePartialName(source.name);
    std::string made = joinPath(folder, partial);
    std::optional<FileIdentity> identity;
    TreeCopy tree(TreeCopy::Owner::us, cancel, progress);
    try {
        tree.copy(fromFolder.get(), source.name, toFolder.get(), partial, from);
        identity = identityOf(made);
        cancel.throwIfCancelled();
        made = joinPath(folder,
                        placeUnderFreeName(toFolder, partial, source.name, S_ISDIR(status.st_mode), from));
        flush(toFolder, folder);
    } catch (...) {
        removeLeftover(made, identity);
        throw;
    }
    return {made, tree.files(), tree.bytes()};
}

} // namespace vh
