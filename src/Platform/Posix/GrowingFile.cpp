#include "Platform/GrowingFile.h"

#include "Platform/Posix/Calls.h"
#include "Platform/Posix/StatusType.h"

#include <algorithm>
#include <unistd.h>

namespace vh {

namespace {

FileStamp stampFrom(const struct stat& status) {
#ifdef __APPLE__
    const timespec modified = status.st_mtimespec;
#else
    const timespec modified = status.st_mtim;
#endif
    return {identityIn(status), status.st_size, int64_t{modified.tv_sec} * 1'000'000'000 + modified.tv_nsec};
}

} // namespace

std::optional<FileStamp> stampOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0)
        return stampFrom(status);
    if (errno == ENOENT || errno == ENOTDIR)
        return std::nullopt;
    throwErrno(path);
}

std::optional<GrowingFile> GrowingFile::openIfPresent(const std::string& path) {
    FileDescriptor file = openAt(AT_FDCWD, path, O_RDONLY | O_NONBLOCK);
    if (!file && (errno == ENOENT || errno == ENOTDIR))
        return std::nullopt;
    if (!file)
        throwErrno(path);
    return GrowingFile(std::move(file), path);
}

FileStamp GrowingFile::stamp() const {
    return stampFrom(statusOfOpen(file_, path_));
}

std::string GrowingFile::readFrom(int64_t offset) const {
    if (::lseek(file_.get(), offset, SEEK_SET) < 0)
        throwErrno(path_);
    std::string bytes(static_cast<size_t>(std::max<int64_t>(stamp().byteSize - offset, 0)), '\0');
    size_t used = 0;
    while (used < bytes.size()) {
        const ssize_t got =
            retried([&] { return ::read(file_.get(), bytes.data() + used, bytes.size() - used); });
        if (got < 0)
            throwErrno(path_);
        if (got == 0)
            break; // cut back meanwhile
        used += static_cast<size_t>(got);
    }
    bytes.resize(used);
    return bytes;
}

void appendToFile(const std::string& path, std::string_view bytes) {
    const FileDescriptor file = openPath(path, O_WRONLY | O_APPEND | O_CREAT, 0600);
    const off_t oldEnd = statusOfOpen(file, path).st_size;
    try {
        writeAll(file, bytes, path);
    } catch (const SystemError&) {
        // If even this fails, a part of a line stays, which readers skip and the next writer ends.
        while (::ftruncate(file.get(), oldEnd) != 0 && errno == EINTR) {
        }
        throw;
    }
}

AppendedFile::AppendedFile(const std::string& path)
    : path_(path), file_(openPath(path, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW, 0600)) {}

void AppendedFile::append(std::string_view bytes) const {
    writeAll(file_, bytes, path_);
}

void flushFile(const std::string& path) {
    flush(openPath(path, O_RDONLY), path);
}

} // namespace vh
