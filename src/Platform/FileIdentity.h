#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace vh {

/// Which file a name stands for at this moment: device and inode. Two equal identities are the same file.
struct FileIdentity {
    uint64_t device = 0;
    uint64_t inode = 0;
    auto operator<=>(const FileIdentity&) const = default;
};

/// The identity of what lies at `path`, a symbolic link being itself. Nothing when it cannot be read.
std::optional<FileIdentity> identityOf(const std::string& path);

} // namespace vh
