#include "Core/SystemPaths.h"

#include "Platform/PathParts.h"

namespace vh {

bool SystemPaths::isVirtual(std::string_view path) {
    for (auto root : virtualRoots)
        if (isAtOrBelow(path, root))
            return true;
    return false;
}

std::string_view SystemPaths::real(std::string_view path) {
    for (auto root : virtualRoots) {
        if (!isAtOrBelow(path, root))
            continue;
        const auto rest = path.substr(root.size());
        return rest.empty() ? "/" : rest;
    }
    return path;
}

} // namespace vh
