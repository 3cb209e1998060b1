#include "Platform/MediumRead.h"

#include "Platform/Posix/Calls.h"

#include <unistd.h>
#include <vector>

namespace vh {

void flushVolume(const std::string& folder) {
    if (const FileDescriptor open = openAt(AT_FDCWD, folder, O_RDONLY | O_DIRECTORY))
        ::syncfs(open.get());
}

void readBlocks(const std::string& path, ReadFrom where, const std::function<bool(std::string_view)>& take) {
    readBlocks(openPath(path, O_RDONLY), path, where, take);
}

void readBlocks(const FileDescriptor& file, const std::string& path, ReadFrom where,
                const std::function<bool(std::string_view)>& take) {
    constexpr size_t blockBytes = 1u << 20;
    if (where == ReadFrom::medium) {
        ::fdatasync(file.get()); // pages that are not written yet cannot be let go
        ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_DONTNEED);
    }
    ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    std::vector<char> block(blockBytes);
    for (;;) {
        const ssize_t got = retried([&] { return ::read(file.get(), block.data(), block.size()); });
        if (got < 0)
            throwErrno(path);
        if (got == 0 || !take({block.data(), static_cast<size_t>(got)}))
            break;
    }
    if (where == ReadFrom::medium)
        ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_DONTNEED);
}

} // namespace vh
