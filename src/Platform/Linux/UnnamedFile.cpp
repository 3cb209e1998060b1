#include "Platform/Posix/UnnamedFile.h"

#include "Platform/Posix/Calls.h"

#include <fmt/format.h>
#include <unistd.h>

namespace vh {

FileDescriptor createUnnamed(int folder, mode_t mode) {
    return openAt(folder, ".", O_RDWR | O_TMPFILE, mode);
}

bool cannotBeUnnamed(int code) {
    return code == EOPNOTSUPP || code == EISDIR || code == EINVAL || code == ENOENT || code == ENOSYS;
}

bool giveName(const FileDescriptor& file, int folder, const std::string& name) {
    if (::linkat(file.get(), "", folder, name.c_str(), AT_EMPTY_PATH) == 0)
        return true;
    if (errno != ENOENT) // what an older kernel says to those who are no administrator
        return false;
    const std::string same = fmt::format("/proc/self/fd/{}", file.get());
    return ::linkat(AT_FDCWD, same.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

} // namespace vh
