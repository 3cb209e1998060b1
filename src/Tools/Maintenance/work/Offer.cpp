#include "Automation/Offer.h"
#include "Automation/ActionRun.h"
#include "HelperKit/MaintenanceTable.h"
#include "HelperKit/MaintenanceTexts.h"
#include "HelperKit/TaskList.h"
#include "Tools/Maintenance/work/TasksRun.h"

namespace vh::features {

namespace {

RunRecord maintain(automation::ActionRun& run) {
    const auto list = run.request.payload.find("tasks");
    const auto tasks = list == run.request.payload.end() ? std::vector<MaintenanceTask>()
                                                         : automation::tasksOf(list->second);
    if (tasks.empty())
        return run.fail({"scheduled-action.no-maintenance-tasks", {}});
    automation::TasksRun chores(run.dependencies.maintenance(), run.texts, run.control);
    chores.run(tasks);
    return run.finish(chores.outcome(), chores.words(), chores.metrics(), chores.details());
}

std::vector<automation::FieldChoice> tasks(const Folders&, const Texts& texts) {
    std::vector<automation::FieldChoice> choices;
    for (const MaintenanceTask task : allCases<MaintenanceTask>())
        choices.push_back(
            {std::string(rawValue(task)), helper::taskTitle(task, helper::thisSystem(), texts)});
    return choices;
}

constexpr automation::PayloadField fields[]{{.key = "tasks",
                                             .kind = automation::FieldKind::several,
                                             .missingKey = "schedules.fault.tasks",
                                             .choices = tasks,
                                             .editor = "MaintenanceChoice"}};
constexpr automation::ActionRow actions[]{
    {.id = rawValue(ScheduledAction::maintenance), .run = maintain, .fields = fields}};

} // namespace

extern const automation::Offer Maintenance;
constinit const automation::Offer Maintenance{.tool = "maintenance", .actions = actions};

} // namespace vh::features
