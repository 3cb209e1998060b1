#include "Platform/Posix/CloneFile.h"

#include <cerrno>
#include <linux/fs.h>
#include <sys/ioctl.h>

namespace vh {

PartialFile::Cloned cloneContents(const FileDescriptor& from, const FileDescriptor& to) {
    if (::ioctl(to.get(), FICLONE, from.get()) == 0)
        return PartialFile::Cloned::yes;
    const bool isForAll =
        errno == EOPNOTSUPP || errno == ENOTTY || errno == ENOSYS || errno == EXDEV || errno == EBADF;
    return isForAll ? PartialFile::Cloned::never : PartialFile::Cloned::notThis;
}

} // namespace vh
