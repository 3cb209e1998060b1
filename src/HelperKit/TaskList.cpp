#include "HelperKit/TaskList.h"

#include "Platform/Blank.h"

#include <algorithm>

namespace vh::automation {

std::vector<MaintenanceTask> tasksOf(std::string_view list) {
    std::vector<MaintenanceTask> tasks;
    while (!list.empty()) {
        const size_t comma = list.find(',');
        const auto task = fromRaw<MaintenanceTask>(trimmed(list.substr(0, comma)));
        list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
        if (task && !std::ranges::count(tasks, *task))
            tasks.push_back(*task);
    }
    return tasks;
}

std::string taskList(const std::vector<MaintenanceTask>& tasks) {
    std::string list;
    for (const MaintenanceTask task : tasks)
        list.append(list.empty() ? "" : ",").append(rawValue(task));
    return list;
}

} // namespace vh::automation
