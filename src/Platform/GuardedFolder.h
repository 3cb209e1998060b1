#pragma once

#include "Platform/CancelToken.h"
#include "Platform/FileDescriptor.h"
#include "Platform/Files.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vh {

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
    /// A regular file, for reading; never waits as a pipe would.
    FileDescriptor openFile(const std::string& name) const;
    /// Bytes of all regular files in and below it on its volume; what vanishes meanwhile does not count.
    int64_t byteSize(const CancelToken& cancel = {}) const;
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
