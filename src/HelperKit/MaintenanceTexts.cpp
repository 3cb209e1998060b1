#include "HelperKit/MaintenanceTexts.h"

#include "Core/Texts.h"

#include <fmt/format.h>

namespace vh::helper {

namespace {

using Hindrance = MaintenancePlan::Hindrance;

/// A person's own texts for each system: what is true on one is not on the other.
std::string textOf(std::string_view kind, MaintenanceTask task, MaintenanceSystem system,
                   const Texts& texts) {
    if (system == MaintenanceSystem::linux)
        return texts.text(fmt::format("maintenance.linux.{}.{}", rawValue(task), kind));
    return texts.text(fmt::format("maintenance.task.{}.{}", rawValue(task), kind));
}

} // namespace

std::string taskTitle(MaintenanceTask task, MaintenanceSystem system, const Texts& texts) {
    return textOf("title", task, system, texts);
}

std::string taskDetail(MaintenanceTask task, MaintenanceSystem system, const Texts& texts) {
    return textOf("detail", task, system, texts);
}

std::string successSummary(MaintenanceTask task, MaintenanceSystem system, const Texts& texts) {
    return textOf("success", task, system, texts);
}

std::string failureSummary(MaintenanceTask task, MaintenanceSystem system, const Texts& texts) {
    return textOf("failure", task, system, texts);
}

std::string hindranceText(const MaintenancePlan& plan, const Texts& texts) {
    switch (plan.hindrance) {
    case Hindrance::programs:
        return texts.text(
            "maintenance.hindrance.programs",
            {{"count", plan.missing.size()}, {"programs", fmt::format("{}", fmt::join(plan.missing, ", "))}});
    case Hindrance::desktop:
        return texts.text("maintenance.hindrance.desktop");
    case Hindrance::fileSystem:
        return texts.text("maintenance.hindrance.file-system");
    case Hindrance::none:
        break;
    }
    return {};
}

} // namespace vh::helper
