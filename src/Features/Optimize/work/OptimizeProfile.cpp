#include "Features/Optimize/work/OptimizeProfile.h"

#include "Core/UserDefaults.h"
#include "HelperKit/MaintenanceTable.h"
#include "HelperKit/TaskList.h"

#include <algorithm>
#include <fmt/ranges.h>

namespace vh::automation {

namespace {

/// They mend what is stale and cost seconds; those that need root or close something a person looks at are theirs to
/// choose.
constexpr MaintenanceTask standardTasks[] = {
    MaintenanceTask::flushDNS, MaintenanceTask::rebuildLaunchServices, MaintenanceTask::clearFontCaches};

} // namespace

std::vector<MaintenanceTask> OptimizeProfile::tasks() const {
    auto tasks = tasksOf(fmt::format("{}", fmt::join(maintenanceTasks, ",")));
    std::erase(tasks, MaintenanceTask::restartMac);
    return tasks;
}

std::vector<OptimizeProfile::Step> OptimizeProfile::steps() const {
    std::vector<Step> steps;
    if (cleanStorage)
        steps.push_back({ScheduledAction::cleanStorage, {}});
    if (cleanPrivacy)
        steps.push_back({ScheduledAction::cleanPrivacy, {}});
    if (const auto chosen = tasks(); !chosen.empty())
        steps.push_back({ScheduledAction::maintenance, {{"tasks", taskList(chosen)}}});
    if (smartHealth)
        steps.push_back({ScheduledAction::smartHealth, {}});
    return steps;
}

OptimizeProfile OptimizeProfile::standard() {
    const helper::MaintenanceSystem system = helper::thisSystem();
    const helper::MaintenanceFacts facts = helper::factsOfThisMachine();
    OptimizeProfile profile;
    for (const MaintenanceTask task : standardTasks)
        if (!requiresRoot(task, system) && !maintenancePlan(task, system, facts).commands.empty())
            profile.maintenanceTasks.emplace_back(rawValue(task));
    return profile;
}

OptimizeProfile OptimizeProfile::load(const UserDefaults& defaults) {
    const auto stored = defaults.get<OptimizeProfile>(key);
    return stored ? *stored : standard();
}

void OptimizeProfile::save(UserDefaults& defaults) const {
    const auto chosen = tasks();
    defaults.set(key, *this);
    defaults.set(rootStepsKey, std::ranges::any_of(chosen, [](MaintenanceTask task) {
                     return requiresRoot(task, helper::thisSystem());
                 }));
}

} // namespace vh::automation
