#include "Platform/Posix/CopyPiece.h"

#include "Platform/Posix/Calls.h"

#include <algorithm>
#include <unistd.h>
#include <vector>

namespace vh {

namespace {

size_t copyThroughMemory(const FileDescriptor& from, const FileDescriptor& to, size_t most,
                         const std::string& path) {
    std::vector<char> block(std::min<size_t>(most, 1u << 20));
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
    return copyThroughMemory(from, to, most,
                             path); // some of the kernel's own files only seem to be at their end
}

size_t copyPieceAt(const FileDescriptor& from, const FileDescriptor& to, int64_t offset, size_t most,
                   const std::string& path) {
    off_t fromAt = offset, toAt = offset;
    const ssize_t copied =
        retried([&] { return ::copy_file_range(from.get(), &fromAt, to.get(), &toAt, most, 0); });
    if (copied > 0)
        return static_cast<size_t>(copied);
    if (copied < 0 && !cannotInKernel(errno))
        throwErrno(path);
    if (::lseek(from.get(), offset, SEEK_SET) < 0 || ::lseek(to.get(), offset, SEEK_SET) < 0)
        throwErrno(path);
    return copyThroughMemory(from, to, most, path);
}

} // namespace vh
