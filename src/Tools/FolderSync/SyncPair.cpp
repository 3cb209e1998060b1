#include "Tools/FolderSync/SyncPair.h"

#include <string_view>

namespace vh::sync {

namespace {

std::string_view lastComponent(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/'))
        path.remove_suffix(1);
    return path.size() == 1 ? path : path.substr(path.rfind('/') + 1);
}

} // namespace

std::string SyncPair::title() const {
    if (!name.empty() || source.empty() || destination.empty())
        return name;
    return std::string(lastComponent(source)) + " → " + std::string(lastComponent(destination));
}

} // namespace vh::sync
