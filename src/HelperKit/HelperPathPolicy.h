#pragma once

#include "Core/PathAllowlist.h"
#include "Platform/Folders.h"

#include <set>
#include <string>

namespace vh::helper {

/// Which paths the helper may touch for a peer. Compares text and looks at no file but those that macOS names twice.
struct HelperPathPolicy {
    PathAllowlist allowlist;
    std::set<std::string> deniedBasenames;

    /// A path of the allowlist, and the root of it that covers it.
    struct Place {
        std::string root;
        std::string path; ///< normalised
    };
    /// Throws HelperServiceError: denied, rootDeletionForbidden, deniedBasename, asked in this order.
    Place validateMutablePath(const std::string& path) const;
    /// Throws HelperServiceError: denied.
    Place validateReadablePath(const std::string& path) const;

    /// The caches, the logs and the temporary folder of a user.
    static PathAllowlist userSpaceAllowlist(const Folders& folders);
    static std::set<std::string> defaultDeniedBasenames();
    /// One root on a scratch folder.
    static PathAllowlist fixtureAllowlist(const std::string& root);
};

/// An absolute path without aliases, "." and "..". Throws HelperServiceError (denied) for all else that a message may
/// hold, such as a relative path, a "~" or a zero byte.
std::string normalisedPath(const std::string& path);

} // namespace vh::helper
