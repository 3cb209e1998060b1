#pragma once

#include "Platform/Files.h"

#include <sys/stat.h>

namespace vh {

inline FileType typeOfMode(mode_t mode) {
    switch (mode & S_IFMT) {
    case S_IFREG:
        return FileType::file;
    case S_IFDIR:
        return FileType::folder;
    case S_IFLNK:
        return FileType::link;
    case S_IFSOCK:
        return FileType::socket;
    default:
        return FileType::other;
    }
}

inline FileIdentity identityIn(const struct stat& status) {
    return {static_cast<uint64_t>(status.st_dev), static_cast<uint64_t>(status.st_ino)};
}

} // namespace vh
