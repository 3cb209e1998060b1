#include "Platform/Posix/CloneFile.h"

#include <linux/fs.h>
#include <sys/ioctl.h>

namespace vh {

bool cloneContents(const FileDescriptor& from, const FileDescriptor& to) {
    return ::ioctl(to.get(), FICLONE, from.get()) == 0;
}

} // namespace vh
