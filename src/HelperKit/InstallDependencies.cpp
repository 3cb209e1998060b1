#include "HelperKit/InstallDependencies.h"

#include "HelperKit/HelperServiceError.h"
#include "HelperKit/OutsideSandbox.h"
#include "Platform/Folders.h"

#include <cerrno>

namespace vh::helper {

namespace {

constexpr std::chrono::seconds askLimit{300};
constexpr std::chrono::seconds installLimit{3600};

/// The folder of the system, and the two in it that are ours.
std::pair<std::string, std::string> systemAndOwn(const std::string& path) {
    const size_t slash = path.rfind('/', path.rfind('/') - 1);
    return {path.substr(0, slash), path.substr(slash + 1)};
}

bool isProgram(const std::string& path) {
    return statusOf(path).has_value();
}

} // namespace

InstallDependencies InstallDependencies::ofThisMachine() {
    const bool isMac = thisSystem() == MaintenanceSystem::macos;
    const std::string kept = isMac ? "/Library/Application Support/Varnholt" : "/var/lib/varnholt";
    return {
        .system = thisSystem(),
        .hasProgram = isProgram,
        .inboxOf = [](uint32_t user) { return Folders::ofUser(user).caches + "/Varnholt/Company"; },
        .packageStaging = kept + (isMac ? "/Packages" : "/packages"),
        .applicationStaging = kept + (isMac ? "/Apps" : "/apps"),
        .applications = isMac ? "/Applications" : "/opt",
        .ask =
            [](const MaintenanceCommand& command) { return MaintenanceRunner::execute(command, askLimit); },
        .install =
            [](const MaintenanceCommand& command) {
                return MaintenanceRunner::execute(
                    hasServiceManager() ? outsideSandbox(command, installLimit) : command, installLimit);
            }};
}

HandedItem handedItem(const std::string& path) {
    const size_t slash = path.rfind('/');
    std::string name = path.substr(slash + 1);
    try {
        GuardedFolder folder = GuardedFolder::open(slash == 0 ? "/" : path.substr(0, slash));
        const auto status = folder.statusOf(name);
        if (status && status->type == FileType::link)
            throw LinkRefused(path);
        if (status)
            return {std::move(folder), std::move(name), *status};
    } catch (const LinkRefused&) {
        throw HelperServiceError("symlink", "Refusing to follow a symlink: " + path);
    } catch (const SystemError& error) {
        if (error.code() != ENOENT && error.code() != ENOTDIR)
            throw;
    }
    throw HelperServiceError("notFound", "Not found: " + path);
}

GuardedFolder emptiedStaging(const std::string& path) {
    const auto [system, own] = systemAndOwn(path);
    GuardedFolder folder = GuardedFolder::open(system).made(own);
    if (folder.isShared())
        throw SystemError(path, "Others than the administrator may write here");
    for (const std::string& name : folder.names())
        folder.remove(name);
    return folder;
}

} // namespace vh::helper
