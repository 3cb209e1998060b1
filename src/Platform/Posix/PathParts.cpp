#include "Platform/PathParts.h"

#include "Platform/SystemError.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <vector>

namespace vh {

PathParts splitPath(std::string_view path) {
    const bool absolute = path.starts_with('/');
    while (path.ends_with('/'))
        path.remove_suffix(1);
    const size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return {absolute ? "/" : ".", std::string(path)};
    std::string_view folder = path.substr(0, slash);
    while (folder.ends_with('/'))
        folder.remove_suffix(1);
    return {folder.empty() ? "/" : std::string(folder), std::string(path.substr(slash + 1))};
}

std::string joinPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.ends_with('/'))
        path += '/';
    return path += name;
}

bool isAtOrBelow(std::string_view path, std::string_view folder) {
    if (folder.ends_with('/'))
        folder.remove_suffix(1);
    return !path.empty() && path.starts_with(folder) &&
           (path.size() == folder.size() || path[folder.size()] == '/');
}

bool isBelow(std::string_view path, std::string_view folder) {
    return isAtOrBelow(path, folder) && path.size() > folder.size() + (folder.ends_with('/') ? 0 : 1);
}

std::string standardisedPath(std::string_view path) {
    const bool absolute = path.starts_with('/');
    std::vector<std::string_view> kept;
    while (!path.empty()) {
        const size_t slash = path.find('/');
        const std::string_view part = path.substr(0, slash);
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
        if (part.empty() || part == ".")
            continue;
        if (part != "..")
            kept.push_back(part);
        else if (!kept.empty() && kept.back() != "..")
            kept.pop_back();
        else if (!absolute)
            kept.push_back(part);
    }
    std::string result;
    for (const std::string_view part : kept)
        result.append(result.empty() && !absolute ? "" : "/").append(part);
    return result.empty() && absolute ? "/" : result;
}

std::string realFolder(const std::string& folder) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(folder.c_str(), nullptr), &std::free);
    if (real)
        return real.get();
    const PathParts parts = splitPath(folder);
    if (errno != ENOENT || parts.name.empty() || folder == ".")
        throwErrno(folder);
    return standardisedPath(joinPath(realFolder(parts.folder), parts.name));
}

std::string withRealFolder(const std::string& path) {
    const PathParts parts = splitPath(path);
    return joinPath(realFolder(parts.folder), parts.name);
}

} // namespace vh
