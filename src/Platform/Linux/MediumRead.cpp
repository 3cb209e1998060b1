#include "Platform/MediumRead.h"

#include "Platform/Posix/Calls.h"

#include <algorithm>
#include <memory>
#include <unistd.h>

namespace vh {

void flushVolume(const std::string& folder) {
    if (const FileDescriptor open = openAt(AT_FDCWD, folder, O_RDONLY | O_DIRECTORY))
        ::syncfs(open.get());
}

namespace {

/// Pages that are not written yet cannot be let go. Whoever wants the medium's own memory emptied too flushes the volume.
void letGo(const FileDescriptor& file) {
    ::sync_file_range(file.get(), 0, 0,
                      SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
    ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_DONTNEED);
}

} // namespace

void beginReading(const FileDescriptor& file, ReadFrom where) {
    if (where == ReadFrom::medium)
        letGo(file);
    ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_WILLNEED);
}

void readBlocks(const std::string& path, ReadFrom where, const std::function<bool(std::string_view)>& take) {
    readBlocks(openPath(path, O_RDONLY), path, where, take);
}

void readBlocks(const FileDescriptor& file, const std::string& path, ReadFrom where,
                const std::function<bool(std::string_view)>& take) {
    constexpr size_t smallest = 4096, largest = 1u << 20;
    const auto expected = static_cast<size_t>(std::max<off_t>(0, statusOfOpen(file, path).st_size));
    const size_t size = std::clamp(expected + 1, smallest, largest); // a byte more shows the end
    const bool isLarge = expected > largest;
    if (where == ReadFrom::medium)
        letGo(file);
    if (isLarge)
        ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    const auto block = std::make_unique_for_overwrite<char[]>(size);
    for (;;) {
        const ssize_t got = retried([&] { return ::read(file.get(), block.get(), size); });
        if (got < 0)
            throwErrno(path);
        if (got == 0 || !take({block.get(), static_cast<size_t>(got)}))
            break;
    }
    if (where == ReadFrom::medium && isLarge)
        ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_DONTNEED);
}

} // namespace vh
