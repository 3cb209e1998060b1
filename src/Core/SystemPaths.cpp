#include "Core/SystemPaths.h"

namespace vh {

namespace {

bool isAtOrBelow(std::string_view path, std::string_view root) {
    return path.starts_with(root) && (path.size() == root.size() || path[root.size()] == '/');
}

} // namespace

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
