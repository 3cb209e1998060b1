#include "Platform/Posix/CopyPiece.h"

#include "Platform/Posix/Calls.h"

#include <unistd.h>
#include <vector>

namespace vh {

namespace {

size_t copyThroughMemory(const FileDescriptor& from, const FileDescriptor& to, const std::string& path) {
    std::vector<char> block(1u << 20);
    const ssize_t got = retried([&] { return ::read(from.get(), block.data(), block.size()); });
    if (got < 0)
        throwErrno(path);
    writeAll(to, {block.data(), static_cast<size_t>(got)}, path);
    return static_cast<size_t>(got);
}

/// Other file systems, old kernels and containers that forbid the call.
bool cannotInKernel(int code) {
    return code == EXDEV || code == EINVAL || code == ENOSYS || code == EOPNOTSUPP || code == EPERM;
}

} // namespace

size_t copyPiece(const FileDescriptor& from, const FileDescriptor& to, const std::string& path) {
    constexpr size_t most = 8u << 20;
    const ssize_t copied =
        retried([&] { return ::copy_file_range(from.get(), nullptr, to.get(), nullptr, most, 0); });
    if (copied > 0)
        return static_cast<size_t>(copied);
    if (copied < 0 && !cannotInKernel(errno))
        throwErrno(path);
    return copyThroughMemory(from, to, path); // some of the kernel's own files only seem to be at their end
}

} // namespace vh
