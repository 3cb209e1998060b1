#pragma once

#include "Platform/CancelToken.h"
#include "Platform/FileDescriptor.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

/// Thrown when a link lies on the way that anybody may have put there.
class LinkRefused : public SystemError {
public:
    explicit LinkRefused(const std::string& path) : SystemError(path, "A link that is not followed") {}
};

/// A folder held open while the administrator works in places where others may move and link things meanwhile. All in
/// it is named from the descriptor, and no link in it is followed. Throws SystemError that says the path. Any thread.
class GuardedFolder {
public:
    /// From "/" on. A link on the way is followed only in a folder where nobody but the administrator may put one.
    static GuardedFolder open(const std::string& path);
    /// A folder below it by a relative path, which may be empty; through no link.
    GuardedFolder below(std::string_view relative) const;
    /// Like below, and makes what is missing, with mode 0755 less the process's mask.
    GuardedFolder made(std::string_view relative) const;

    const std::string& path() const { return path_; }
    int descriptor() const { return folder_.get(); }
    FileStatus status() const;
    /// Whether others than its owner may put things into it.
    bool isShared() const;
    bool isOnVolumeOf(const GuardedFolder& other) const;

    /// Of what is called `name` in it, a link being itself; nothing when nothing is there.
    std::optional<FileStatus> statusOf(const std::string& name) const;
    struct OpenFile {
        FileDescriptor descriptor;
        FileStatus status; ///< of what is open, whatever the name says by now
    };
    /// A regular file, for reading; never waits as a pipe would.
    OpenFile openFile(const std::string& name) const;
    /// The first bytes of a regular file, fewer when it is shorter; empty when it is none.
    std::string startOfFile(const std::string& name, size_t bytes) const;
    /// Of all that lies directly in it, sorted.
    std::vector<std::string> names() const;
    /// Bytes of all regular files in and below it on its volume; what vanishes meanwhile does not count.
    int64_t byteSize(const CancelToken& cancel = {}) const;
    /// Writes the rest of an open file to a new one of ours that all may read.
    void addFile(const std::string& name, const OpenFile& from) const;
    /// Copies what is called `fromName`, with all below it, to a new item that is ours and that nobody else may write.
    void addCopy(const std::string& name, const GuardedFolder& from, const std::string& fromName) const;
    /// removePermanently of Platform/Removal.h.
    void remove(const std::string& name, const std::optional<FileIdentity>& expected = std::nullopt) const;

private:
    GuardedFolder(FileDescriptor folder, std::string path)
        : folder_(std::move(folder)), path_(std::move(path)) {}
    GuardedFolder step(const std::string& name) const;

    FileDescriptor folder_;
    std::string path_;
};

} // namespace vh
