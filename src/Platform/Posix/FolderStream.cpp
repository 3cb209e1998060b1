#include "Platform/Posix/FolderStream.h"

#include "Platform/Posix/Calls.h"

namespace vh {

FolderStream::FolderStream(const FileDescriptor& folder, std::string path) : path_(std::move(path)) {
    FileDescriptor own = openAt(folder.get(), ".", O_RDONLY | O_DIRECTORY);
    if (!own)
        throwErrno(path_);
    stream_.reset(::fdopendir(own.get()));
    if (!stream_)
        throwErrno(path_);
    own.release();
}

std::optional<std::string> FolderStream::next() {
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(stream_.get());
        if (entry == nullptr && errno != 0)
            throwErrno(path_);
        if (entry == nullptr)
            return std::nullopt;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            return std::string(name);
    }
}

void FolderStream::rewind() {
    ::rewinddir(stream_.get());
}

} // namespace vh
