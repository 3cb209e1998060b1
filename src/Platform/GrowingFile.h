#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/FileIdentity.h"

#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// What tells one state of a file from another.
struct FileStamp {
    FileIdentity identity;
    int64_t byteSize = 0;
    int64_t modifiedNanoseconds = 0; ///< since 1970, UTC
    bool operator==(const FileStamp&) const = default;
};

/// Follows links. Nothing when no file is there; throws SystemError when that cannot be found out.
std::optional<FileStamp> stampOf(const std::string& path);

/// A file that is read again and again while others append to it. As long as it is open, no other file can have its
/// identity, so an equal identity at the path means that it was not replaced.
class GrowingFile {
public:
    /// Nothing when no file is there. Throws SystemError.
    static std::optional<GrowingFile> openIfPresent(const std::string& path);

    FileStamp stamp() const;
    /// The bytes from `offset` to the end.
    std::string readFrom(int64_t offset) const;

private:
    GrowingFile(FileDescriptor file, std::string path) : file_(std::move(file)), path_(std::move(path)) {}
    FileDescriptor file_;
    std::string path_;
};

/// Adds all of `bytes` at the end of the file, which is made with mode 0600 if missing. On failure cuts the file back
/// to its old end and throws SystemError. The caller keeps other writers away.
void appendToFile(const std::string& path, std::string_view bytes);

/// A file that is held open to be added to. Any thread: what is added in one call stays together.
class AppendedFile {
public:
    /// Makes it with mode 0600 if missing. Throws SystemError.
    explicit AppendedFile(const std::string& path);
    /// Throws SystemError; a part may have been added then.
    void append(std::string_view bytes) const;

private:
    std::string path_;
    FileDescriptor file_;
};

/// Makes what was written to the file survive a power cut. Throws SystemError.
void flushFile(const std::string& path);

} // namespace vh
