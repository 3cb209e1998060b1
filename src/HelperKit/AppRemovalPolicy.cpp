#include "HelperKit/AppRemovalPolicy.h"

#include "HelperKit/ApplicationIdentity.h"
#include "HelperKit/HelperPathPolicy.h"
#include "HelperKit/HelperServiceError.h"

#include <algorithm>
#include <array>

namespace vh::helper {

namespace {

/// What lies beside the applications and is none: folders for the local administrator, and the container runtimes'.
constexpr std::array<std::string_view, 9> systemFolders{"bin", "doc", "include",    "info", "lib",
                                                        "man", "cni", "containerd", "local"};

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return lower;
}

/// The query takes a pattern.
std::string withoutPatterns(std::string_view path) {
    std::string escaped;
    for (const char c : path) {
        if (std::string_view("*?[]\\").find(c) != std::string_view::npos)
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

void requireOwnerless(const InstallDependencies& dependencies, const HandedItem& item,
                      const std::string& path) {
    std::vector<std::string> children;
    if (item.status.type == FileType::folder)
        for (const std::string& name : item.folder.below(item.name).names())
            children.push_back(path + "/" + name);
    for (const MaintenanceCommand& query : AppRemovalPolicy::ownerQueries(path, children)) {
        if (!dependencies.hasProgram(query.executable))
            continue;
        const MaintenanceRunner::Execution answer = dependencies.ask(query);
        if (answer.timedOut || answer.status < 0)
            throw HelperServiceError("failed", "Whether a package owns " + path +
                                                   " could not be asked: " + answer.output);
        if (const std::string owner = AppRemovalPolicy::ownerIn(answer); !owner.empty())
            throw HelperServiceError("ofAPackage", path + " belongs to the package " + owner +
                                                       "; remove that with the package manager.");
    }
}

} // namespace

bool isProtectedApplication(MaintenanceSystem system, std::string_view name, std::string_view id) {
    const std::string lower = lowerCase(name);
    if (lower.starts_with("varnholt") || id.starts_with("com.varnholt."))
        return true;
    if (system == MaintenanceSystem::macos)
        return id.starts_with("com.apple.");
    return std::ranges::find(systemFolders, name) != systemFolders.end();
}

bool isApplicationName(MaintenanceSystem system, std::string_view name) {
    if (name.empty() || name.starts_with('.'))
        return false;
    return system != MaintenanceSystem::macos || (name.ends_with(".app") && name != ".app");
}

std::string AppRemovalPolicy::check(const std::string& path) const {
    std::string normal = normalisedPath(path);
    const size_t slash = normal.rfind('/');
    if (normal.substr(0, slash) != applications)
        throw HelperServiceError::denied(normal);
    const std::string name = normal.substr(slash + 1);
    if (!isApplicationName(system, name))
        throw HelperServiceError("notAnApp", "Not an application: " + normal);
    if (isProtectedApplication(system, name, {}))
        throw HelperServiceError("protected", normal + " is protected and cannot be removed.");
    return normal;
}

std::vector<MaintenanceCommand> AppRemovalPolicy::ownerQueries(const std::string& path,
                                                               const std::vector<std::string>& children) {
    MaintenanceCommand debian{"/usr/bin/dpkg-query", {"--search", "--", withoutPatterns(path)}};
    // There a package may own files in a folder and not the folder.
    MaintenanceCommand rpm{"/usr/bin/rpm", {"--query", "--queryformat=%{NAME}:\\n", "--file", "--", path}};
    rpm.arguments.insert(rpm.arguments.end(), children.begin(), children.end());
    return {debian, rpm, {"/usr/bin/pacman", {"--query", "--owns", "--", path}}};
}

std::string AppRemovalPolicy::ownerIn(const MaintenanceRunner::Execution& answer) {
    std::string_view rest = answer.output;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        // "/opt/google/ is owned by google-chrome 140-1"
        constexpr std::string_view owned = " is owned by ";
        if (const size_t at = line.find(owned); at != std::string_view::npos)
            return std::string(line.substr(at + owned.size()));
        // "google-chrome: /opt/google" and "google-chrome:"; what is nobody's begins with the path or the tool's name.
        const std::string_view owner = line.substr(0, line.find(':'));
        const bool isAnswer = owner.size() < line.size() && owner.find('/') == std::string_view::npos &&
                              !owner.starts_with("diversion by ");
        if (isAnswer && owner != "dpkg-query" && owner != "error" && owner != "rpm")
            return std::string(owner);
    }
    return {};
}

void removeApplication(const InstallDependencies& dependencies, const std::string& path) {
    const std::string normal = AppRemovalPolicy{dependencies.system, dependencies.applications}.check(path);
    const HandedItem item = handedItem(normal);
    const bool isMac = dependencies.system == MaintenanceSystem::macos;
    const auto id = applicationIdentity(dependencies, item.folder, item.name);
    // On Linux many an application brings no desktop file along.
    if (!id && (isMac || item.status.type != FileType::folder))
        throw HelperServiceError("notAnApp", "Not an application: " + normal);
    if (isProtectedApplication(dependencies.system, item.name, id.value_or("")))
        throw HelperServiceError("protected", normal + " is protected and cannot be removed.");
    if (!isMac)
        requireOwnerless(dependencies, item, normal);
    item.folder.remove(item.name, item.status.identity);
}

} // namespace vh::helper
