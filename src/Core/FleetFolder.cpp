#include "Core/FleetFolder.h"

#include "Platform/UserFolders.h"

namespace vh {

std::string pathOf(FleetFolder folder, const Folders& folders) {
    switch (folder) {
    case FleetFolder::downloads:
        return userFolder(UserFolder::downloads, folders);
    case FleetFolder::desktop:
        return userFolder(UserFolder::desktop, folders);
    case FleetFolder::documents:
        return userFolder(UserFolder::documents, folders);
    case FleetFolder::shared:
        break;
    }
    return userFolder(UserFolder::publicShare, folders);
}

} // namespace vh
