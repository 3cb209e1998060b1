#include "HelperKit/MaintenanceWork.h"

#include "HelperKit/HelperClient.h"
#include "HelperKit/MaintenanceTexts.h"
#include "Platform/Host.h"

namespace vh::helper {

namespace {

constexpr std::chrono::seconds slowLimit{3600};
constexpr std::chrono::seconds quickLimit{180};

} // namespace

MaintenanceWork::World MaintenanceWork::ofThisMachine() {
    return {thisSystem(),
            [](MaintenanceTask task) { return maintenancePlan(task, thisSystem(), factsOfThisMachine()); },
            isAdministrator()};
}

bool MaintenanceWork::goesToHelper(MaintenanceTask task) const {
    return requiresRoot(task, world_.system) && !world_.isAdministrator;
}

HelperRegistrationStatus MaintenanceWork::helperStatus() const {
    return helper_ ? helper_->refreshStatus() : HelperRegistrationStatus::notFound;
}

bool MaintenanceWork::lacksHelper(MaintenanceTask task) const {
    return goesToHelper(task) && helperStatus() != HelperRegistrationStatus::enabled;
}

std::string MaintenanceWork::hindrance(MaintenanceTask task, const Texts& texts) const {
    if (const MaintenancePlan plan = planOf(task); !plan.isPossible())
        return hindranceText(plan, texts);
    if (!lacksHelper(task))
        return {};
    return HelperClientError::unavailable(helper_ ? helper_->status() : helperStatus()).text(texts);
}

MaintenanceRunner::Result MaintenanceWork::run(MaintenanceTask task, const CancelToken& cancel) const {
    if (!goesToHelper(task))
        return MaintenanceRunner::run(planOf(task), isSlow(task, world_.system) ? slowLimit : quickLimit,
                                      cancel);
    cancel.throwIfCancelled();
    if (!helper_)
        throw HelperClientError::unavailable(HelperRegistrationStatus::notFound);
    return helper_->runMaintenanceTask(task);
}

} // namespace vh::helper
