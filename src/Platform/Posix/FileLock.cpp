#include "Platform/FileLock.h"

#include "Platform/Posix/Calls.h"

#include <sys/file.h>

namespace vh {

namespace {

FileDescriptor openLockFile(const std::string& path) {
    return openPath(path, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
}

} // namespace

FileLock::FileLock(const std::string& path) : file_(openLockFile(path)) {
    if (retried([&] { return ::flock(file_.get(), LOCK_EX); }) != 0)
        throwErrno(path);
}

FileLock::~FileLock() {
    if (file_)
        ::flock(file_.get(), LOCK_UN);
}

FileLock FileLock::tryLock(const std::string& path) {
    FileLock lock;
    FileDescriptor file = openLockFile(path);
    if (retried([&] { return ::flock(file.get(), LOCK_EX | LOCK_NB); }) == 0)
        lock.file_ = std::move(file);
    else if (errno != EWOULDBLOCK)
        throwErrno(path);
    return lock;
}

} // namespace vh
