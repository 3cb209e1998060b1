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
/// Which programs the machine lacks for it.
std::string missingSummary(const MaintenancePlan& plan, const Texts& texts);

} // namespace vh::helper
