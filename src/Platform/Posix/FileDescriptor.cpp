#include "Platform/FileDescriptor.h"

#include <cerrno>
#include <unistd.h>

namespace vh {

// Not repeated after EINTR: the descriptor is gone by then. errno is kept for the failure being reported.
void FileDescriptor::reset() {
    if (fd_ < 0)
        return;
    const int before = errno;
    ::close(release());
    errno = before;
}

} // namespace vh
