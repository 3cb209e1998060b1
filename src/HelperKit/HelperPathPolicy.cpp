#include "HelperKit/HelperPathPolicy.h"

#include "Core/SystemPaths.h"
#include "HelperKit/HelperServiceError.h"

#include <algorithm>

namespace vh::helper {

namespace {

/// Longer ones the system does not take.
constexpr size_t mostPathBytes = 4096;

} // namespace

std::string normalisedPath(const std::string& path) {
    if (!path.starts_with('/') || path.size() >= mostPathBytes || path.find('\0') != std::string::npos)
        throw HelperServiceError::denied(path);
    return PathAllowlist::normalize(SystemPaths::real(path));
}

HelperPathPolicy::Place HelperPathPolicy::validateReadablePath(const std::string& path) const {
    std::string normal = normalisedPath(path);
    if (!allowlist.allows(normal))
        throw HelperServiceError::denied(normal);
    // The longest root, since one may lie in another.
    std::string root;
    for (const std::string& prefix : allowlist.allowedPrefixes())
        if (prefix.size() > root.size() && PathAllowlist({prefix}).allows(normal))
            root = prefix;
    return {std::move(root), std::move(normal)};
}

HelperPathPolicy::Place HelperPathPolicy::validateMutablePath(const std::string& path) const {
    Place place = validateReadablePath(path);
    if (std::ranges::find(allowlist.allowedPrefixes(), place.path) != allowlist.allowedPrefixes().end())
        throw HelperServiceError::rootDeletionForbidden(place.path);
    const std::string name = place.path.substr(place.path.rfind('/') + 1);
    if (deniedBasenames.contains(name))
        throw HelperServiceError::deniedBasename(name);
    return place;
}

PathAllowlist HelperPathPolicy::userSpaceAllowlist(const Folders& folders) {
    return PathAllowlist({folders.caches, folders.logs, folders.temporary});
}

std::set<std::string> HelperPathPolicy::defaultDeniedBasenames() {
    return {"CloudKit", "FamilyCircle", "com.apple.accountsd", "com.apple.Safari"};
}

PathAllowlist HelperPathPolicy::fixtureAllowlist(const std::string& root) {
    return PathAllowlist({root});
}

} // namespace vh::helper
