#include "Tools/SystemJunk/SystemJunkConfiguration.h"

#include "Platform/Files.h"
#include "Platform/PathParts.h"
#include "Tools/SystemJunk/Places.h"

#include <utility>

namespace vh::junk {

namespace {

using Root = std::pair<std::string, RootKind>;

/// A variable of the environment, or a link it names, can make a root of the home folder, of a folder for data or
/// settings, or of what lies above one, and then everything a person owns would be junk. Only the temporary folder may
/// lie above the home: what holds the home is never an item. All paths without links.
bool isUsable(const std::string& root, RootKind kind, const Folders& folders) {
    const std::string home = withoutLinks(folders.home);
    if (root.empty() || root == "/" || root == home)
        return false;
    if (isAtOrBelow(home, root))
        return kind == RootKind::temporary;
    return !isAtOrBelow(withoutLinks(folders.data), root) && !isAtOrBelow(withoutLinks(folders.config), root);
}

} // namespace

SystemJunkConfiguration SystemJunkConfiguration::userDefaults(const Folders& folders,
                                                              const std::string& databaseFolder) {
    std::vector<std::string> paths;
    std::set<std::string> realPaths;
    std::vector<RootKind> kinds;
    for (const auto& [path, kind] :
         {Root{folders.caches, RootKind::caches}, Root{folders.logs, RootKind::logs},
          Root{folders.temporary, RootKind::temporary}}) {
        Root root{PathAllowlist::normalize(path), kind};
        const std::string real = withoutLinks(root.first);
        if (!isUsable(real, kind, folders) || !realPaths.insert(real).second)
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
