#include "Tools/SystemJunk/SystemJunkConfiguration.h"

#include "Platform/Files.h"

#include <utility>

namespace vh::junk {

namespace {

using Root = std::pair<std::string, RootKind>;

/// A variable of the environment can make a root of the home folder or of what lies above it, and then everything a
/// person owns would be junk. Only the temporary folder may lie above: what holds the home folder is never an item.
bool isUsable(const Root& root, const std::string& home) {
    if (root.first.empty() || root.first == "/" || root.first == home)
        return false;
    return root.second == RootKind::temporary || !home.starts_with(root.first + '/');
}

} // namespace

SystemJunkConfiguration SystemJunkConfiguration::userDefaults(const Folders& folders,
                                                              const std::string& databaseFolder) {
    const std::string home = PathAllowlist::normalize(folders.home);
    std::vector<std::string> paths;
    std::vector<RootKind> kinds;
    for (const auto& [path, kind] :
         {Root{folders.caches, RootKind::caches}, Root{folders.logs, RootKind::logs},
          Root{folders.temporary, RootKind::temporary}}) {
        Root root{PathAllowlist::normalize(path), kind};
        if (!isUsable(root, home) || std::ranges::find(paths, root.first) != paths.end())
            continue;
        paths.push_back(std::move(root.first));
        kinds.push_back(kind);
    }

    SystemJunkConfiguration configuration{PathAllowlist(paths), std::move(kinds), defaultDeniedBasenames()};
    configuration.heldPaths = {folders.home, folders.data, folders.config, folders.runtime};
    configuration.ownFolders = {folders.data + "/Varnholt", folders.config + "/Varnholt"};
    if (!databaseFolder.empty())
        configuration.ownFolders.push_back(databaseFolder);
    // Whose home it is, is who is cleaning, also under sudo.
    if (const auto status = statusOf(folders.home))
        configuration.owner = status->owner;
    return configuration;
}

SystemJunkConfiguration SystemJunkConfiguration::fixture(const std::string& root) {
    return {PathAllowlist({root}), {RootKind::other}, {"KEEP_ME"}};
}

} // namespace vh::junk
