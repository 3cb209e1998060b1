#include "Automation/ScheduledActions.h"

#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Core/SuiteModule.h"
#include "Core/ToolTexts.h"
#include "HelperKit/TaskList.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "Tools/FolderSync/work/SyncJob.h"
#include "Tools/Maintenance/work/TasksRun.h"

#include <algorithm>
#include <array>

namespace vh::automation {

namespace {

constexpr std::string_view syncTool = "company-sync";

RunDetails detailsOf(const ActionRequest& request) {
    RunDetails details = request.details;
    if (const auto flow = request.payload.find("flow"); flow != request.payload.end())
        details.emplace(RunDetail::flow, flow->second);
    return details;
}

/// One run of one action.
class ActionRun {
public:
    ActionRun(const AutomationWorld& world, const ActionRequest& request, const JobControl& control,
              std::string_view moduleID = {}, const ScheduledActions::RunSync* runSync = nullptr)
        : world_(world), request_(request), control_(control), moduleID_(moduleID), runSync_(runSync),
          texts_(world.texts()), details_(detailsOf(request)),
          run_(request.within ? world.runs.log.beginPart(request.toolID, request.trigger, details_)
                              : world.runs.log.begin(request.toolID, request.trigger, details_)) {}

    /// What the work throws becomes the record.
    RunRecord run(RunRecord (ActionRun::*work)()) {
        try {
            return (this->*work)();
        } catch (const Cancelled&) {
            return finish(Outcome::cancelled, texts_.text("scheduled-action.stopped"));
        } catch (const std::exception& error) {
            return fail(error.what());
        }
    }

    RunRecord clean();
    RunRecord maintain();
    RunRecord sync();
    RunRecord notThereYet() {
        return fail(texts_.text("scheduled-action.not-there-yet", {{"tool", toolTitle(request_.toolID)}}));
    }
    RunRecord fail(std::string summary) {
        return finish(Outcome::failed, std::move(summary), {{RunMetric::errors, 1}});
    }

private:
    RunRecord finish(Outcome outcome, std::string summary, const RunMetrics& metrics = {},
                     const RunDetails& details = {}) {
        return run_->finish(outcome, std::move(summary), metrics, details);
    }
    std::string toolTitle(std::string_view toolID) const {
        if (toolID == syncTool)
            return texts_.text("scheduled-action.company-sync.title");
        const auto action = fromRaw<ScheduledAction>(toolID);
        return action ? titleOf(*action, texts_) : toolName(texts_, toolID);
    }

    const AutomationWorld& world_;
    const ActionRequest& request_;
    const JobControl& control_;
    const std::string_view moduleID_; ///< through which the action works
    const ScheduledActions::RunSync* const runSync_;
    const Texts texts_;
    const RunDetails details_;
    const std::shared_ptr<RunHandle> run_;
};

/// Everything that a scan finds goes to the Trash.
RunRecord ActionRun::clean() {
    const auto module = world_.module(moduleID_);
    if (!module)
        return notThereYet();
    control_.report(-1, texts_.text("scheduled-action.scanning"));
    const ScanReport report = module->scan(control_);
    if (report.items.empty())
        return finish(Outcome::success, texts_.text("scheduled-action.nothing-to-clean"));
    control_.report(-1, texts_.text("scheduled-action.moving-to-trash"));
    CleanStart start(request_.trigger);
    start.details = details_;
    start.isUnattended = true;
    start.within = request_.within.get();
    return runClean(*module, report, CleanSelection::all(report, RemovalMethod::trash), start, world_.runs,
                    texts_, control_)
        .record;
}

RunRecord ActionRun::maintain() {
    const auto list = request_.payload.find("tasks");
    const auto tasks =
        list == request_.payload.end() ? std::vector<MaintenanceTask>() : tasksOf(list->second);
    if (tasks.empty())
        return fail(texts_.text("scheduled-action.no-maintenance-tasks"));
    TasksRun run(world_.maintenance(), texts_, control_);
    run.run(tasks);
    return finish(run.outcome(), run.summary(), run.metrics(), run.details());
}

RunRecord ActionRun::sync() {
    sync::SyncPairStore store(sync::SyncPairStore::fileIn(world_.folders));
    const auto pair = pairOfPayload(request_.payload, store.load());
    if (!pair)
        return fail(texts_.text("scheduled-action.sync-pair-gone"));
    control_.report(-1, texts_.text("scheduled-action.syncing", {{"name", printable(pair->title())}}));
    if (runSync_ && *runSync_)
        return (*runSync_)(*pair, request_.trigger, details_, control_);
    SyncJobRequest request{.pair = *pair, .trigger = request_.trigger, .details = details_};
    request.isAttended = false;
    request.logsNothingToDo = true;
    return *runSync(request, world_, control_).record;
}

/// What an action does. Those of tools that are not there yet say so.
struct ActionRow {
    ScheduledAction action;
    RunRecord (ActionRun::*work)();
};
constexpr std::array rows{ActionRow{ScheduledAction::cleanStorage, &ActionRun::clean},
                          ActionRow{ScheduledAction::cleanPrivacy, &ActionRun::clean},
                          ActionRow{ScheduledAction::maintenance, &ActionRun::maintain},
                          ActionRow{ScheduledAction::smartHealth, &ActionRun::notThereYet},
                          ActionRow{ScheduledAction::folderSync, &ActionRun::sync},
                          ActionRow{ScheduledAction::optimize, &ActionRun::notThereYet},
                          ActionRow{ScheduledAction::backup, &ActionRun::notThereYet}};
static_assert(rows.size() == allCases<ScheduledAction>().size());

const ActionRow& rowOf(ScheduledAction action) {
    return *std::ranges::find(rows, action, &ActionRow::action);
}

} // namespace

RunRecord ScheduledActions::run(const ScheduledTask& task, Trigger trigger, const JobControl& control) const {
    const ActionRequest request{task.toolID, task.payload, trigger, {}};
    if (task.toolID == syncTool)
        return ActionRun(world_, request, control).run(&ActionRun::notThereYet);
    if (task.actionID == flowAction && runFlow_)
        return runFlow_(task, control);
    if (const auto action = fromRaw<ScheduledAction>(task.actionID))
        return run(*action, request, control);
    return ActionRun(world_, request, control)
        .fail(world_.texts().text("scheduled-action.unknown", {{"action", printable(task.actionID)}}));
}

RunRecord ScheduledActions::run(ScheduledAction action, const ActionRequest& request,
                                const JobControl& control) const {
    if (action == ScheduledAction::optimize && runOptimize_)
        return runOptimize_(request.trigger, control, detailsOf(request));
    return ActionRun(world_, request, control, rawValue(action), &runSync_).run(rowOf(action).work);
}

bool ScheduledActions::isThere(ScheduledAction action) const {
    if (action == ScheduledAction::optimize)
        return static_cast<bool>(runOptimize_);
    const auto work = rowOf(action).work;
    return work == &ActionRun::clean ? world_.module(rawValue(action)) != nullptr
                                     : work != &ActionRun::notThereYet;
}

} // namespace vh::automation
