#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/SystemError.h"

#include <cerrno>
#include <fcntl.h>
#include <span>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace vh {

/// Opens a folder only to name what is in it: needs no right to list it.
#ifdef O_PATH
constexpr int openForLookup = O_PATH | O_DIRECTORY;
#else
constexpr int openForLookup = O_SEARCH | O_DIRECTORY;
#endif

/// Makes the call again while a signal interrupts it.
template <class Call>
auto retried(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// openat(2), close-on-exec. Gives an empty descriptor and errno on failure.
FileDescriptor openAt(int folder, const std::string& name, int flags, mode_t mode = 0);
/// open(2), close-on-exec. Throws SystemError.
FileDescriptor openPath(const std::string& path, int flags, mode_t mode = 0);

/// fstat(2); throws SystemError that names `path`.
struct stat statusOfOpen(const FileDescriptor& file, const std::string& path);

/// Writes all of it, whatever the pieces. Throws SystemError that names `path`.
void writeAll(const FileDescriptor& file, std::string_view bytes, const std::string& path);
/// Fills as much of `block` as the file has from `offset`; less only at its end. Throws SystemError that names `path`.
size_t readAt(const FileDescriptor& file, int64_t offset, std::span<char> block, const std::string& path);
/// Reads from where the file stands to its end. Throws SystemError that names `path`.
std::string readAll(const FileDescriptor& file, const std::string& path);
/// Flushes a file or a folder; a file system that cannot flush a folder is no failure.
void flush(const FileDescriptor& file, const std::string& path);

/// What a symbolic link says; empty and errno on failure.
std::string readLinkAt(int folder, const std::string& name);

} // namespace vh
