#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/FileMetadata.h"
#include "Platform/FileUsage.h"
#include "Platform/Files.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

/// Lists one folder without following links below it, cheaply: names and types come in blocks, and a size is asked
/// for only by who wants it. Not for sharing between threads.
class FolderReader {
public:
    struct Entry {
        std::string_view name; ///< valid until the next call
        FileType type;
    };

    /// Throws SystemError. A symbolic link at `path` itself is followed.
    explicit FolderReader(const std::string& path);
    /// A folder inside an open one; a link there is refused.
    FolderReader(const FolderReader& parent, std::string_view name);
    ~FolderReader();
    FolderReader(FolderReader&&) noexcept;

    /// The next entry, never "." or ".."; nothing at the end. Throws SystemError.
    std::optional<Entry> next();
    /// Size and times of what is called `name`, a link being itself; nothing when it vanished or may not be looked at.
    std::optional<FileUsage> usage(std::string_view name) const;
    /// Of the folder itself.
    std::optional<FileUsage> usage() const;
    /// Of what is called `name`, a link being itself; nothing when it vanished. Throws SystemError.
    struct Stamp {
        FileType type = FileType::other;
        int64_t byteSize = 0;
        FileMetadata::Time modified;
    };
    std::optional<Stamp> stamp(std::string_view name) const;
    /// What the link called `name` says. Throws SystemError.
    std::string linkTarget(std::string_view name) const;
    int descriptor() const { return folder_.get(); }

private:
    FileDescriptor folder_;
    std::string path_;
    std::vector<char> block_;
    size_t used_ = 0;
    size_t filled_ = 0;
};

/// Names of the direct children, in the system's order. Throws SystemError.
std::vector<std::string> childNames(const std::string& path);

} // namespace vh
