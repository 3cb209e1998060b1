#pragma once

#include "Core/Message.h"
#include "HelperKit/MaintenanceTable.h"

#include <optional>
#include <string>

namespace vh::helper {

/// What people read of a task, true on the system that is named.
std::string taskTitle(MaintenanceTask task, MaintenanceSystem system, const Texts& texts);
std::string taskDetail(MaintenanceTask task, MaintenanceSystem system, const Texts& texts);
Message titleMessage(MaintenanceTask task, MaintenanceSystem system);
Message successMessage(MaintenanceTask task, MaintenanceSystem system);
Message failureMessage(MaintenanceTask task, MaintenanceSystem system);
/// Why the machine cannot do it, such as which programs it lacks; empty when it can.
std::string blockerText(const MaintenancePlan& plan, const Texts& texts);
std::optional<Message> blockerMessage(const MaintenancePlan& plan);

} // namespace vh::helper
