#include "HelperKit/MaintenanceWork.h"

#include "HelperKit/HelperClient.h"
#include "HelperKit/MaintenanceTexts.h"
#include "Platform/Host.h"

namespace vh::helper {

MaintenanceWork::Dependencies MaintenanceWork::ofThisMachine() {
    return {thisSystem(),
            [](MaintenanceTask task) { return maintenancePlan(task, thisSystem(), factsOfThisMachine()); },
            isAdministrator()};
}

bool MaintenanceWork::goesToHelper(MaintenanceTask task) const {
    return requiresRoot(task, dependencies_.system) && !dependencies_.isAdministrator;
}

HelperRegistrationStatus MaintenanceWork::helperStatus() const {
    return helper_ ? helper_->refreshStatus() : HelperRegistrationStatus::notFound;
}

bool MaintenanceWork::lacksHelper(MaintenanceTask task) const {
    return goesToHelper(task) && helperStatus() != HelperRegistrationStatus::enabled;
}

std::optional<Message> MaintenanceWork::blocker(MaintenanceTask task) const {
    if (const MaintenancePlan plan = planOf(task); !plan.isPossible())
        return blockerMessage(plan);
    if (!lacksHelper(task))
        return std::nullopt;
    return HelperClientError::unavailable(helper_ ? helper_->status() : helperStatus()).message();
}

std::string MaintenanceWork::blocker(MaintenanceTask task, const Texts& texts) const {
    const auto message = blocker(task);
    return message ? worded(*message, texts) : std::string();
}

MaintenanceEnd MaintenanceWork::run(MaintenanceTask task, const CancelToken& cancel) const {
    using enum MaintenanceEnd::Kind;
    try {
        cancel.throwIfCancelled();
        if (auto reason = blocker(task))
            return {failed, std::move(reason), {}};
        MaintenanceRunner::Result result = perform(task, cancel);
        return {result.succeeded ? done : failed, {}, std::move(result.output)};
    } catch (const LeftToHelper&) {
        return {leftToHelper};
    } catch (const Cancelled&) {
        return {stopped};
    } catch (const std::exception& error) {
        return {failed, messageOf(error), {}};
    }
}

MaintenanceRunner::Result MaintenanceWork::perform(MaintenanceTask task, const CancelToken& cancel) const {
    if (!goesToHelper(task))
        return MaintenanceRunner::run(planOf(task), timeLimit(task, dependencies_.system), cancel);
    if (!helper_)
        throw HelperClientError::unavailable(HelperRegistrationStatus::notFound);
    return helper_->runMaintenanceTask(task, cancel);
}

} // namespace vh::helper
