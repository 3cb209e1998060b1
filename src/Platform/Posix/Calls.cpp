#include "Platform/Posix/Calls.h"

#include <climits>
#include <unistd.h>

namespace vh {

FileDescriptor openAt(int folder, const std::string& name, int flags, mode_t mode) {
    return FileDescriptor(retried([&] { return ::openat(folder, name.c_str(), flags | O_CLOEXEC, mode); }));
}

FileDescriptor openPath(const std::string& path, int flags, mode_t mode) {
    FileDescriptor file = openAt(AT_FDCWD, path, flags, mode);
    if (!file)
        throwErrno(path);
    return file;
}

struct stat statusOfOpen(const FileDescriptor& file, const std::string& path) {
    struct stat status {};
    if (::fstat(file.get(), &status) != 0)
        throwErrno(path);
    return status;
}

void writeAll(const FileDescriptor& file, std::string_view bytes, const std::string& path) {
    while (!bytes.empty()) {
        const ssize_t written = retried([&] { return ::write(file.get(), bytes.data(), bytes.size()); });
        if (written < 0)
            throwErrno(path);
        bytes.remove_prefix(static_cast<size_t>(written));
    }
}

size_t readAt(const FileDescriptor& file, int64_t offset, std::span<char> block, const std::string& path) {
    size_t filled = 0;
    while (filled < block.size()) {
        const ssize_t got = retried([&] {
            return ::pread(file.get(), block.data() + filled, block.size() - filled,
                           offset + static_cast<off_t>(filled));
        });
        if (got < 0)
            throwErrno(path);
        if (got == 0)
            break;
        filled += static_cast<size_t>(got);
    }
    return filled;
}

std::string readAll(const FileDescriptor& file, const std::string& path) {
    const off_t expected = statusOfOpen(file, path).st_size;
    std::string bytes(expected > 0 ? static_cast<size_t>(expected) + 1 : 4096, '\0');
    size_t used = 0;
    for (;;) {
        const ssize_t got =
            retried([&] { return ::read(file.get(), bytes.data() + used, bytes.size() - used); });
        if (got < 0)
            throwErrno(path);
        if (got == 0)
            break;
        used += static_cast<size_t>(got);
        if (used == bytes.size())
            bytes.resize(bytes.size() * 2);
    }
    bytes.resize(used);
    return bytes;
}

void flush(const FileDescriptor& file, const std::string& path) {
    if (retried([&] { return ::fsync(file.get()); }) != 0 && errno != EINVAL && errno != ENOTSUP)
        throwErrno(path);
}

std::string readLinkAt(int folder, const std::string& name) {
    std::string target(256, '\0');
    for (;;) {
        const ssize_t length = ::readlinkat(folder, name.c_str(), target.data(), target.size());
        if (length < 0)
            return {};
        if (static_cast<size_t>(length) < target.size()) {
            target.resize(static_cast<size_t>(length));
            return target;
        }
        target.resize(target.size() * 2);
    }
}

} // namespace vh
