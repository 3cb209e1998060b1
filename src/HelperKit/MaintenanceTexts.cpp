#include "HelperKit/MaintenanceTexts.h"

#include <fmt/format.h>

namespace vh::helper {

namespace {

using Hindrance = MaintenancePlan::Hindrance;

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

std::string hindranceText(const MaintenancePlan& plan, const Texts& texts) {
    const auto message = hindranceMessage(plan);
    return message ? worded(*message, texts) : std::string();
}

std::optional<Message> hindranceMessage(const MaintenancePlan& plan) {
    switch (plan.hindrance) {
    case Hindrance::programs:
        return Message{
            "maintenance.hindrance.programs",
            {{"count", plan.missing.size()}, {"programs", fmt::format("{}", fmt::join(plan.missing, ", "))}}};
    case Hindrance::desktop:
        return Message{"maintenance.hindrance.desktop", {}};
    case Hindrance::fileSystem:
        return Message{"maintenance.hindrance.file-system", {}};
    case Hindrance::none:
        break;
    }
    return std::nullopt;
}

} // namespace vh::helper
