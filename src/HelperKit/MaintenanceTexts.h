#pragma once

#include "HelperKit/MaintenanceTable.h"

#include <string>

namespace vh {
class Texts;
}

namespace vh::helper {

/// What people read of a task, true on the system that is named.
std::string taskTitle(MaintenanceTask task, MaintenanceSystem system, const Texts& texts);
std::string taskDetail(MaintenanceTask task, MaintenanceSystem system, const Texts& texts);
std::string successSummary(MaintenanceTask task, MaintenanceSystem system, const Texts& texts);
std::string failureSummary(MaintenanceTask task, MaintenanceSystem system, const Texts& texts);
/// Why the machine cannot do it, such as which programs it lacks; empty when it can.
std::string hindranceText(const MaintenancePlan& plan, const Texts& texts);

} // namespace vh::helper
