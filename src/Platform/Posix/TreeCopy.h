#pragma once

#include "Platform/FileIdentity.h"

#include <optional>
#include <string>
#include <sys/stat.h>

namespace vh {

class FileDescriptor;

/// One copy of an item and all below it, each file flushed. What a failure leaves half-done is its caller's to remove.
class TreeCopy {
public:
    enum class Owner {
        kept,   ///< as far as we may give files away, with all metadata
        usAlone ///< times and modes only, and nobody else may write it or gets rights over us by it
    };
    explicit TreeCopy(Owner owner) : owner_(owner) {}

    /// Copies what is called `fromName` to the free name `toName`. Throws SystemError that names `path` or what lies
    /// below it.
    void copy(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
              const std::string& path);

private:
    void copyFile(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                  const std::string& path);
    void copyFolder(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                    const std::string& path);
    void copyLink(int fromFolder, const std::string& fromName, int toFolder, const std::string& toName,
                  const struct stat& status, const std::string& path);
    void copyMetadata(const FileDescriptor& from, const FileDescriptor& to, const std::string& path) const;

    Owner owner_;
    std::optional<FileIdentity> top_; ///< the first folder made
};

} // namespace vh
