#pragma once

#include "HelperKit/MaintenanceTable.h"

#include <chrono>

namespace vh::helper {

/// The same command, run by the system's service manager: for programs that need the network or change the system,
/// which the helper's own unit may not. Output and status are the command's; past `limit` it is ended. Pure.
MaintenanceCommand outsideSandbox(const MaintenanceCommand& command, std::chrono::seconds limit);

/// Whether this machine has such a manager.
bool hasServiceManager();

} // namespace vh::helper
