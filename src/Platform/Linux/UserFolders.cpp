#include "Platform/UserFolders.h"

#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "Platform/Linux/AssignmentFile.h"
#include "Platform/PathParts.h"
#include "Platform/SystemError.h"

#include <optional>
#include <string_view>

namespace vh {

namespace {

struct Names {
    const char* key;
    const char* usual; ///< in the home
};

Names namesOf(UserFolder folder) {
    switch (folder) {
    case UserFolder::downloads:
        return {"XDG_DOWNLOAD_DIR", "Downloads"};
    case UserFolder::desktop:
        return {"XDG_DESKTOP_DIR", "Desktop"};
    case UserFolder::documents:
        return {"XDG_DOCUMENTS_DIR", "Documents"};
    case UserFolder::publicShare:
        break;
    }
    return {"XDG_PUBLICSHARE_DIR", "Public"};
}

std::string settings(const Folders& folders) {
    try {
        return readFileIfPresent(joinPath(folders.config, "user-dirs.dirs")).value_or("");
    } catch (const SystemError&) {
        return {}; // then the usual ones hold
    }
}

} // namespace

std::string userFolder(UserFolder folder, const Folders& folders) {
    constexpr std::string_view home = "$HOME";
    const Names names = namesOf(folder);
    std::string path = assignedValue(settings(folders), names.key);
    if (path == home || path.starts_with(std::string(home) + "/"))
        path = folders.home + path.substr(home.size());
    // A relative one says nothing, and so the rules of the desktop ignore it.
    return path.starts_with('/') ? standardisedPath(path) : joinPath(folders.home, names.usual);
}

} // namespace vh
