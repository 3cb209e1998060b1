#include "HelperKit/HelperService.h"

#include "Core/Codec.h"
#include "HelperKit/AppRemovalPolicy.h"
#include "HelperKit/HelperServiceError.h"
#include "HelperKit/ImagePath.h"
#include "HelperKit/OutsideSandbox.h"
#include "Platform/Folders.h"
#include "Platform/GuardedFolder.h"
#include "Platform/SystemError.h"

#include <cerrno>
#include <fmt/format.h>

namespace vh::helper {

namespace {

constexpr std::chrono::seconds maintenanceLimit{3600};

MaintenancePlan planOfThisMachine(MaintenanceTask task) {
    MaintenancePlan plan = maintenancePlan(task, thisSystem(), factsOfThisMachine());
    if (task == MaintenanceTask::downloadUpdates && hasServiceManager())
        for (MaintenanceCommand& command : plan.commands)
            command = outsideSandbox(command, maintenanceLimit);
    return plan;
}

/// An item of the allowlist in the open folder that holds it.
struct HeldItem {
    GuardedFolder folder;
    std::string name;
    FileStatus status;
};

std::string_view relativePath(const HelperPathPolicy::Place& place) {
    std::string_view rest = std::string_view(place.path).substr(place.root.size());
    rest.remove_prefix(rest.starts_with('/') ? 1 : 0);
    return rest;
}

bool isMissing(const SystemError& error) {
    return error.code() == ENOENT || error.code() == ENOTDIR;
}

GuardedFolder openFound(const std::string& path) {
    try {
        return GuardedFolder::open(path);
    } catch (const SystemError& error) {
        if (!isMissing(error))
            throw;
        throw HelperServiceError::notFound(path);
    }
}

/// The root is the system's affair; below it no link leads on. In a root that all users share, such as the temporary
/// folder, a peer's things are those that lie under their own.
HeldItem heldItem(const HelperPathPolicy::Place& place, uint32_t user) {
    try {
        const GuardedFolder root = openFound(place.root);
        const auto requireOwn = [&](const FileStatus& first) {
            if (root.isShared() && first.owner != user)
                throw HelperServiceError::denied(place.path);
        };
        const std::string_view rest = relativePath(place);
        const size_t first = rest.find('/'), last = rest.rfind('/');
        const bool isDirect = first == std::string_view::npos;
        GuardedFolder folder = root.below(isDirect ? "" : rest.substr(0, first));
        if (!isDirect) {
            requireOwn(folder.status()); // of what is open, not of what had the name before
            folder = folder.below(rest.substr(first, last - first));
        }
        if (!folder.isOnVolumeOf(root))
            throw SystemError(folder.path(), "Another volume is mounted here");
        std::string name(rest.substr(last + 1));
        if (const auto status = folder.statusOf(name)) {
            if (isDirect)
                requireOwn(*status);
            return {std::move(folder), std::move(name), *status};
        }
    } catch (const SystemError& error) {
        if (!isMissing(error))
            throw;
    }
    throw HelperServiceError::notFound(place.path);
}

} // namespace

HelperService::Dependencies HelperService::ofThisMachine() {
    return {[](uint32_t user) {
                return HelperPathPolicy{HelperPathPolicy::userSpaceAllowlist(Folders::ofUser(user)),
                                        HelperPathPolicy::defaultDeniedBasenames()};
            },
            planOfThisMachine, [](MaintenanceTask task) { return helper::requiresRoot(task, thisSystem()); },
            InstallDependencies::ofThisMachine()};
}

std::string HelperService::pong() {
    return "varnholt-helper " VH_VERSION;
}

HelperPathPolicy::Place HelperService::checkRemoval(const std::string& path, uint32_t user) const {
    return dependencies_.pathsOf(user).validateMutablePath(path);
}

HelperPathPolicy::Place HelperService::checkSize(const std::string& path, uint32_t user) const {
    return dependencies_.pathsOf(user).validateReadablePath(path);
}

void HelperService::removeAllowedItem(const std::string& path, uint32_t user) const {
    const HeldItem item = heldItem(checkRemoval(path, user), user);
    item.folder.remove(item.name, item.status.identity);
}

int64_t HelperService::sizeOfAllowedDirectory(const std::string& path, uint32_t user,
                                              const CancelToken& cancel) const {
    const HelperPathPolicy::Place place = checkSize(path, user);
    if (place.path == place.root)
        return openFound(place.root).byteSize(cancel);
    const HeldItem item = heldItem(place, user);
    if (item.status.type == FileType::folder)
        return item.folder.below(item.name).byteSize(cancel);
    return item.status.type == FileType::file ? item.status.byteSize : 0;
}

MaintenanceTask HelperService::validateMaintenanceTask(const std::string& id) const {
    const auto task = fromRaw<MaintenanceTask>(id);
    if (!task)
        throw HelperServiceError::unknownTask(id);
    if (!dependencies_.requiresRoot(*task))
        throw HelperServiceError::taskNotPrivileged(id);
    return *task;
}

MaintenanceRunner::Result HelperService::runMaintenanceTask(const std::string& id,
                                                            const CancelToken& cancel) const {
    const MaintenancePlan plan = dependencies_.planOf(validateMaintenanceTask(id));
    if (!plan.missing.empty())
        throw HelperServiceError("missingProgram", fmt::format("Task {} needs one of these programs: {}.", id,
                                                               fmt::join(plan.missing, ", ")));
    if (!plan.isPossible())
        throw HelperServiceError("notPossible", "This system cannot do the task " + id + ".");
    return MaintenanceRunner::run(plan, maintenanceLimit, cancel);
}

void HelperService::checkApplicationRemoval(const std::string& path) const {
    AppRemovalPolicy{dependencies_.installs.system, dependencies_.installs.applications}.check(path);
}

void HelperService::removeApplication(const std::string& path) const {
    helper::removeApplication(dependencies_.installs, path);
}

DeviceJobSpec HelperService::checkDeviceJob(const std::string& json, uint32_t user) {
    try {
        auto spec = decodeJson<DeviceJobSpec>(json);
        if (!spec.device.starts_with("/dev/") || normalisedPath(spec.device) != spec.device)
            throw std::runtime_error(spec.device + " is not a disk");
        spec.destination = normalisedPath(spec.destination);
        if (!isImagePath(spec.destination, Folders::ofUser(user).home, thisSystem()))
            throw std::runtime_error("an image may not be written to " + spec.destination);
        return spec;
    } catch (const std::exception& error) {
        throw HelperServiceError::badJobSpec(error.what());
    }
}

} // namespace vh::helper
