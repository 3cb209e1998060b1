#pragma once

#include "Platform/FileDescriptor.h"

#include <dirent.h>
#include <memory>
#include <optional>
#include <string>

namespace vh {

/// The names in an open folder, on a descriptor of its own; without "." and "..".
class FolderStream {
public:
    /// Throws SystemError that names `path`, as next() does.
    FolderStream(const FileDescriptor& folder, std::string path);
    std::optional<std::string> next();
    void rewind();

private:
    struct Closer {
        void operator()(DIR* stream) const { ::closedir(stream); }
    };
    std::unique_ptr<DIR, Closer> stream_;
    std::string path_;
};

} // namespace vh
