#include "Platform/Files.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/TreeCopy.h"
#include "Platform/Posix/UniqueName.h"
#include "Platform/Removal.h"

#include <cstdio>

namespace vh {

namespace {

/// The copy appears under its name only when it is whole and on the disk; only then the original goes.
void moveAcrossVolumes(const std::string& from, const std::string& to) {
    const PathParts source = splitPath(from);
    const PathParts target = splitPath(to);
    const FileDescriptor fromFolder = openPath(source.folder, openForLookup);
    const FileDescriptor toFolder = openPath(target.folder, O_RDONLY | O_DIRECTORY);
    const std::string partial = uniquePartialName(target.name);
    try {
        TreeCopy(TreeCopy::Owner::kept).copy(fromFolder.get(), source.name, toFolder.get(), partial, from);
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
