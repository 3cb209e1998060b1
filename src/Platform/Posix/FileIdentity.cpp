#include "Platform/FileIdentity.h"

#include <sys/stat.h>

namespace vh {

std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        return std::nullopt;
    return FileIdentity{static_cast<uint64_t>(status.st_dev), static_cast<uint64_t>(status.st_ino)};
}

} // namespace vh
