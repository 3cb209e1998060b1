#pragma once

#include "Platform/CancelToken.h"
#include "Platform/FileIdentity.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace vh {

class FileDescriptor;

/// One copy of an item and all below it: contents, modes and times, each file flushed. What a failure leaves half-done
/// is its caller's to remove.
class TreeCopy {
public:
    enum class Owner {
        kept,   ///< where we may give files away
        us,     ///< and nobody gets rights over us by it
        usAlone ///< and nobody else may write it
    };
    explicit TreeCopy(Owner owner, CancelToken cancel = {}, std::function<void(int64_t bytes)> progress = {})
        : owner_(owner), cancel_(std::move(cancel)), progress_(std::move(progress)) {}

    /// Copies what is called `fromName` to the free name `toName`. Throws SystemError that names `path` or what lies
    /// below it, or Cancelled.
    void copy(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
              const std::string& path);

    int64_t files() const { return files_; } ///< links included
    int64_t bytes() const { return bytes_; }

private:
    void copyFile(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                  const std::string& path);
    void copyFolder(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                    const std::string& path);
    void copyLink(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                  const struct stat& status, const std::string& path);
    void copyOwnerModeAndTimes(const FileDescriptor& to, const struct stat& status,
                               const std::string& path) const;

    Owner owner_;
    CancelToken cancel_;
    std::function<void(int64_t)> progress_;
    std::optional<FileIdentity> top_; ///< the first folder made
    int64_t files_ = 0;
    int64_t bytes_ = 0;
};

} // namespace vh
