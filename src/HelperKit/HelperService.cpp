#include "HelperKit/HelperService.h"

#include "HelperKit/HelperServiceError.h"
#include "Platform/Folders.h"

#include <fmt/format.h>

namespace vh::helper {

namespace {

constexpr std::chrono::seconds maintenanceLimit{3600};

} // namespace

HelperService::World HelperService::ofThisMachine() {
    return {[](uint32_t user) {
                return HelperPathPolicy{HelperPathPolicy::userSpaceAllowlist(Folders::ofUser(user)),
                                        HelperPathPolicy::defaultDeniedBasenames()};
            },
            [](MaintenanceTask task) { return maintenancePlan(task, thisSystem(), factsOfThisMachine()); },
            [](MaintenanceTask task) {
                return helper::requiresRoot(task, thisSystem());
            }};
}

std::string HelperService::pong() {
    return "varnholt-helper " VH_VERSION;
}

MaintenanceTask HelperService::validateMaintenanceTask(const std::string& id) const {
    const auto task = fromRaw<MaintenanceTask>(id);
    if (!task)
        throw HelperServiceError::unknownTask(id);
    if (!world_.requiresRoot(*task))
        throw HelperServiceError::taskNotPrivileged(id);
    return *task;
}

MaintenanceRunner::Result HelperService::runMaintenanceTask(const std::string& id,
                                                            const CancelToken& cancel) const {
    const MaintenancePlan plan = world_.planOf(validateMaintenanceTask(id));
    if (plan.commands.empty())
        throw HelperServiceError("missingProgram", fmt::format("Task {} needs one of these programs: {}.", id,
                                                               fmt::join(plan.missing, ", ")));
    return MaintenanceRunner::run(plan, maintenanceLimit, cancel);
}

} // namespace vh::helper
