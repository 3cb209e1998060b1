#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/FileIdentity.h"
#include "Platform/FileMetadata.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace vh {

/// What tells one state of a file from another on its volume: who finds an equal one finds the same bytes.
struct FileState {
    uint64_t inode = 0;
    int64_t bytes = 0;
    int64_t modified = 0; ///< nanoseconds since 1970, UTC
    int64_t changed = 0;  ///< the same, of its metadata too
    bool operator==(const FileState&) const = default;
};
/// Nothing when no plain file is there or it may not be asked. Follows links.
std::optional<FileState> fileStateOf(const std::string& path);

/// A file that is being copied, open for reading. One thread at a time.
class SourceFile {
public:
    enum class Attributes { read, left };
    /// Throws SystemError; also for what is no plain file.
    explicit SourceFile(const std::string& path, Attributes attributes = Attributes::read);
    /// What is called `name` in an open folder; a link there is refused. `path` is for errors.
    SourceFile(const FileDescriptor& folder, const std::string& name, std::string path,
               Attributes attributes = Attributes::read);

    const std::string& path() const { return path_; }
    const FileDescriptor& descriptor() const { return file_; }
    int64_t size() const { return state_.bytes; } ///< bytes, when it was opened
    uint64_t device() const { return device_; }
    const FileMetadata& metadata() const { return metadata_; }
    const FileState& state() const { return state_; } ///< when it was opened

    /// A run of bytes that are stored; between two of them lies a hole. That of a file without holes has no end.
    struct Stretch {
        int64_t begin = 0;
        int64_t end = 0;
    };
    bool hasHoles() const { return hasHoles_; }
    /// The first stretch at or after `offset`, nothing when only a hole or the end follows. Throws SystemError.
    std::optional<Stretch> stretchFrom(int64_t offset) const;

    /// Fills as much of `block` as the file has from `offset`; less only at its end. Throws SystemError.
    size_t readAt(int64_t offset, std::span<char> block) const;
    /// Whether size or modification time are others than when it was opened.
    bool hasChanged() const;
    FileIdentity identity() const { return {device_, state_.inode}; }
    /// Lets go of it; what is known of it stays.
    void close() { file_ = FileDescriptor(); }

private:
    void look(Attributes attributes);

    std::string path_;
    FileDescriptor file_;
    FileState state_;
    uint64_t device_ = 0;
    bool hasHoles_ = false;
    FileMetadata metadata_;
};

} // namespace vh
