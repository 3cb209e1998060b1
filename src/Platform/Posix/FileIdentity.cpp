#include "Platform/FileIdentity.h"

#include "Platform/Posix/StatusType.h"

namespace vh {

std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        return std::nullopt;
    return identityIn(status);
}

} // namespace vh
