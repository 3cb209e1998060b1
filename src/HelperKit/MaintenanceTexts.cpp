#include "HelperKit/MaintenanceTexts.h"

#include <fmt/format.h>

namespace vh::helper {

namespace {

using Blocker = MaintenancePlan::Blocker;

/// A person's own texts for each system: what is true on one is not on the other.
Message messageOf(std::string_view kind, MaintenanceTask task, MaintenanceSystem system) {
    if (system == MaintenanceSystem::linux)
        return {fmt::format("maintenance.linux.{}.{}", rawValue(task), kind), {}};
    return {fmt::format("maintenance.task.{}.{}", rawValue(task), kind), {}};
}

} // namespace

std::string taskTitle(MaintenanceTask task, MaintenanceSystem system, const Texts& texts) {
    return worded(titleMessage(task, system), texts);
}

std::string taskDetail(MaintenanceTask task, MaintenanceSystem system, const Texts& texts) {
    return worded(messageOf("detail", task, system), texts);
}

Message titleMessage(MaintenanceTask task, MaintenanceSystem system) {
    return messageOf("title", task, system);
}

Message successMessage(MaintenanceTask task, MaintenanceSystem system) {
    return messageOf("success", task, system);
}

Message failureMessage(MaintenanceTask task, MaintenanceSystem system) {
    return messageOf("failure", task, system);
}

std::string blockerText(const MaintenancePlan& plan, const Texts& texts) {
    const auto message = blockerMessage(plan);
    return message ? worded(*message, texts) : std::string();
}

std::optional<Message> blockerMessage(const MaintenancePlan& plan) {
    switch (plan.blocker) {
    case Blocker::programs:
        return Message{
            "maintenance.blocker.programs",
            {{"count", plan.missing.size()}, {"programs", fmt::format("{}", fmt::join(plan.missing, ", "))}}};
    case Blocker::desktop:
        return Message{"maintenance.blocker.desktop", {}};
    case Blocker::fileSystem:
        return Message{"maintenance.blocker.file-system", {}};
    case Blocker::none:
        break;
    }
    return std::nullopt;
}

} // namespace vh::helper
