#pragma once

#include "Platform/FileDescriptor.h"

#include <string>

namespace vh {

/// One opened Trash: its two folders, held open so that nothing swapped meanwhile misleads.
struct TrashFolder {
    std::string path;       ///< of the Trash itself
    std::string relativeTo; ///< what the paths in its info files start from; "" when they are absolute
    FileDescriptor files;
    FileDescriptor info;

    /// Where the user's own Trash is or would be made.
    static std::string homePath();
    /// The user's own Trash, made when missing. Throws SystemError.
    static TrashFolder ofHome();
    /// The Trash at the top folder of a volume, made when missing. Refuses what others could have planted there: a
    /// link, or a folder that is not this user's. Throws SystemError.
    static TrashFolder ofVolume(const std::string& topFolder);
};

/// The folder that relative paths of the Trash at `trashPath` start from.
std::string baseOfTrash(const std::string& trashPath);

} // namespace vh
