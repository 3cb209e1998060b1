#pragma once

#include "Core/MaintenanceTask.h"

#include <string>
#include <string_view>
#include <vector>

namespace vh::automation {

/// The maintenance tasks of a payload: raw values between commas. Unknown names are dropped, repeated ones too.
std::vector<MaintenanceTask> tasksOf(std::string_view list);
std::string taskList(const std::vector<MaintenanceTask>& tasks);

} // namespace vh::automation
