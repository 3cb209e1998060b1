#pragma once

#include "HelperKit/MaintenanceTable.h"

namespace vh::helper {

/// The Linux half of maintenancePlan: what this machine really has for each chore. Pure.
MaintenancePlan linuxPlan(MaintenanceTask task, const MaintenanceFacts& facts);

} // namespace vh::helper
