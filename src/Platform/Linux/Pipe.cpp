#include "Platform/Posix/Pipe.h"

#include "Platform/SystemError.h"

#include <fcntl.h>
#include <unistd.h>

namespace vh {

namespace {

/// In a process without standard streams a pipe would take their numbers.
FileDescriptor aboveStandardStreams(FileDescriptor file) {
    if (file.get() > STDERR_FILENO)
        return file;
    FileDescriptor moved(::fcntl(file.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!moved)
        throwErrno("pipe");
    return moved;
}

} // namespace

Pipe openPipe() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throwErrno("pipe");
    FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    return {aboveStandardStreams(std::move(reading)), aboveStandardStreams(std::move(writing))};
}

} // namespace vh
