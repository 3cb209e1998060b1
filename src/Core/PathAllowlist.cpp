#include "Core/PathAllowlist.h"

#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "Platform/PathParts.h"

#include <algorithm>
#include <filesystem>

namespace vh {

namespace {

std::string expandHome(std::string_view path) {
    if (path == "~" || path.starts_with("~/"))
        return Folders::ofUser().home + std::string(path.substr(1));
    return std::string(path);
}

std::vector<std::string_view> standardComponents(std::string_view path) {
    const bool isAbsolute = path.starts_with('/');
    std::vector<std::string_view> components;
    for (size_t start = 0; start <= path.size();) {
        const size_t end = std::min(path.find('/', start), path.size());
        const auto component = path.substr(start, end - start);
        start = end + 1;
        if (component.empty() || component == ".")
            continue;
        const bool hasParent = !components.empty() && components.back() != "..";
        if (component == ".." && hasParent)
            components.pop_back();
        else if (component != ".." || !isAbsolute)
            components.push_back(component);
    }
    return components;
}

/// True when the system keeps "/private/<folder>" under the name "/<folder>" too, as macOS does with tmp and var.
bool isAlias(const std::string& folder) {
    std::error_code ignored;
    return std::filesystem::equivalent("/" + folder, "/private/" + folder, ignored);
}

} // namespace

PathAllowlist::PathAllowlist(const std::vector<std::string>& prefixes) {
    for (const auto& prefix : prefixes)
        allowedPrefixes_.push_back(normalize(prefix));
}

std::string PathAllowlist::normalize(std::string_view path) {
    const std::string expanded = expandHome(path);
    const auto components = standardComponents(expanded);
    const bool isAbsolute = expanded.starts_with('/');
    std::string normal;
    for (auto component : components) {
        if (isAbsolute || !normal.empty())
            normal += '/';
        normal += component;
    }
    if (normal.empty() && isAbsolute)
        return "/";
    if (isAbsolute && components.size() > 1 && components[0] == "private") {
        std::string rest = normal.substr(std::string_view("/private").size());
        if (isAlias(std::string(components[1])) && statusOf(rest))
            return rest;
    }
    return normal;
}

bool PathAllowlist::allows(std::string_view path) const {
    // The system would read such a path only up to the zero byte.
    if (path.find('\0') != std::string_view::npos)
        return false;
    const std::string normal = normalize(path);
    if (normal.empty() || normal == "/")
        return false;
    return std::ranges::any_of(allowedPrefixes_, [&](const std::string& prefix) {
        return !prefix.empty() && isAtOrBelow(normal, prefix);
    });
}

void PathAllowlist::assertAllowed(const std::string& path) const {
    if (!allows(path))
        throw PathAllowlistError(path);
}

} // namespace vh
