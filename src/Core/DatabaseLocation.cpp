#include "Core/DatabaseLocation.h"

#include "Core/UserDefaults.h"
#include "Platform/Files.h"
#include "Platform/Folders.h"

namespace vh {

std::string DatabaseLocation::defaultFolder() {
    return Folders::ofUser().data + "/Varnholt";
}

std::string DatabaseLocation::folder(const UserDefaults& defaults) {
    const auto stored = defaults.get<std::string>(key);
    return stored && !stored->empty() ? *stored : defaultFolder();
}

// Whoever moves the database holds the old folder's lock until the new place is stored. The old lock goes before the
// new one is awaited: two who crossed would otherwise wait for each other.
DatabaseLock::DatabaseLock(const UserDefaults& defaults) : folder_(DatabaseLocation::folder(defaults)) {
    take();
    for (std::string now; (now = DatabaseLocation::folder(defaults)) != folder_; take())
        folder_ = now;
}

void DatabaseLock::take() {
    lock_.reset();
    makeFolders(folder_);
    lock_.emplace(folder_ + "/runs.lock");
}

} // namespace vh
