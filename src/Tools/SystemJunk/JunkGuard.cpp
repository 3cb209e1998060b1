#include "Tools/SystemJunk/JunkGuard.h"

#include "Platform/FileUsage.h"
#include "Platform/OpenFiles.h"
#include "Platform/PathParts.h"
#include "Platform/Volumes.h"
#include "Tools/SystemJunk/LogEntries.h"
#include "Tools/SystemJunk/Places.h"

#include <algorithm>
#include <filesystem>

namespace vh::junk {

namespace {

constexpr std::chrono::seconds maxAge{1};

bool holdsOneOf(std::string_view folder, const std::vector<std::string>& paths) {
    return std::ranges::any_of(paths, [&](const std::string& path) { return isAtOrBelow(path, folder); });
}

bool liesInOneOf(std::string_view path, const std::vector<std::string>& folders) {
    return std::ranges::any_of(folders, [&](const std::string& folder) { return isAtOrBelow(path, folder); });
}

/// As it is written and as it is without links, since a link may lead into a root.
void addPlace(std::vector<std::string>& places, const std::string& path) {
    places.push_back(PathAllowlist::normalize(path));
    if (std::string real = withoutLinks(places.back()); real != places.back())
        places.push_back(std::move(real));
}

std::string baseName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

} // namespace

JunkGuard::JunkGuard(const SystemJunkConfiguration& configuration) : configuration_(configuration) {
    for (const auto& root : configuration.allowlist.allowedPrefixes())
        realRoots_.push_back(withoutLinks(root));
}

std::optional<size_t> JunkGuard::rootOf(std::string_view path) const {
    const auto& roots = configuration_.allowlist.allowedPrefixes();
    const auto found = std::ranges::find(roots, path.substr(0, path.rfind('/')));
    if (found == roots.end())
        return std::nullopt;
    return static_cast<size_t>(found - roots.begin());
}

void JunkGuard::lookAround() {
    const auto now = std::chrono::steady_clock::now();
    if (lookedAround_ != std::chrono::steady_clock::time_point{} && now - lookedAround_ < maxAge)
        return;
    lookedAround_ = now;
    inUse_.clear();
    mounts_.clear();
    for (const MountEntry& mount : mountTable())
        mounts_.push_back(mount.path);
    held_.clear();
    own_.clear();
    for (const auto& path : configuration_.heldPaths)
        addPlace(held_, path);
    for (const auto& root : configuration_.allowlist.allowedPrefixes())
        addPlace(held_, root);
    std::error_code failed;
    if (const auto working = std::filesystem::current_path(failed); !failed)
        addPlace(held_, working.string());
    for (const auto& path : configuration_.ownFolders)
        addPlace(own_, path);
}

bool JunkGuard::isNeeded(const std::string& path, const std::string& name, size_t root) const {
    const std::string real = realRoots_[root] + '/' + name;
    return std::ranges::any_of(std::array{path, real}, [&](const std::string& each) {
        return holdsOneOf(each, held_) || holdsOneOf(each, own_) || liesInOneOf(each, own_);
    });
}

bool JunkGuard::isInUse(const std::string& name, size_t root) {
    const auto [known, isNew] = inUse_.try_emplace(root);
    if (isNew)
        known->second = childrenInUse(configuration_.allowlist.allowedPrefixes()[root]);
    return known->second.contains(name);
}

std::optional<JunkCleanerError> JunkGuard::reasonToKeep(const std::string& path, size_t root,
                                                        const FileStatus& status) {
    using enum JunkCleanerError::Kind;
    lookAround();
    const RootKind kind = configuration_.kinds[root];
    const std::string name = baseName(path);
    if (configuration_.deniedBasenames.contains(name) || keepRuleFor(name, kind))
        return JunkCleanerError(deniedBasename, name);
    if (isNeeded(path, name, root))
        return JunkCleanerError(neededFolder, path);
    if (holdsOneOf(realRoots_[root] + '/' + name, mounts_))
        return JunkCleanerError(mounted, path);
    if (status.type == FileType::socket || status.type == FileType::other)
        return JunkCleanerError(notAFile, path);
    if (kind == RootKind::temporary && configuration_.owner && *configuration_.owner != status.owner)
        return JunkCleanerError(foreign, path);
    if (kind == RootKind::logs && !nameSaysLogs(baseName(configuration_.allowlist.allowedPrefixes()[root])) &&
        !consistsOfLogs(path, status.type))
        return JunkCleanerError(notLogs, path);
    if (kind == RootKind::temporary && (isInUse(name, root) || isLockedFolder(path)))
        return JunkCleanerError(inUse, name);
    return std::nullopt;
}

} // namespace vh::junk
