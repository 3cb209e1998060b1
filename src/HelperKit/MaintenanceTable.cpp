#include "HelperKit/MaintenanceTable.h"

namespace vh::helper {

std::vector<MaintenanceTask> listedTasks() {
    std::vector<MaintenanceTask> tasks;
    for (const MaintenanceTask task : allCases<MaintenanceTask>())
        if (task != MaintenanceTask::restartMac)
            tasks.push_back(task);
    return tasks;
}

} // namespace vh::helper
