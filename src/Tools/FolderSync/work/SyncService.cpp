#include "Tools/FolderSync/work/SyncService.h"

#include "Automation/ActionRun.h"
#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "Tools/FolderSync/SyncRecord.h"
#include "Tools/FolderSync/work/SyncJob.h"

namespace vh::automation {

SyncService::SyncService(Automation& automation)
    : dependencies_(automation.dependencies()), runner_(dependencies_, automation.desktop()),
      observing_(runner_.observe([this] { tell(); })) {
    automation.actions().provide(rawValue(ScheduledAction::folderSync), [this](const ActionRequest& request,
                                                                               const JobControl& control) {
        return ActionRun(dependencies_, request, control).run([this](ActionRun& run) {
            return syncPairOf(run, &runner_);
        });
    });
}

std::vector<RunningWork> SyncService::running() const {
    const auto& now = runner_.running();
    if (!now)
        return {};
    const bool isOnlyLooking = now->total == 0;
    return {{.key = "sync",
             .title = now->title,
             .toolID = "sync",
             .saidAs = "cli.serve.sync",
             .progress = isOnlyLooking ? std::nullopt : std::optional(now->fraction),
             .isOnlyLooking = isOnlyLooking}};
}

std::vector<std::string> SyncService::troubles() {
    const auto states = runner_.states();
    const Texts texts = dependencies_.texts();
    std::vector<std::string> troubles;
    for (const sync::SyncPair& pair : runner_.pairs())
        if (const auto state = states.find(pair.id); state != states.end() && !state->second.isHealthy())
            troubles.push_back(pair.title() + ": " + textOf(state->second, pair, texts));
    return troubles;
}

RunRecord syncPairOf(ActionRun& run, SyncRunner* runner) {
    sync::SyncPairStore store(sync::SyncPairStore::fileIn(run.dependencies.folders));
    const auto pair = pairOfPayload(run.request.payload, store.load());
    if (!pair)
        return run.fail({"scheduled-action.sync-pair-gone", {}});
    run.control.report(-1, run.texts.text("scheduled-action.syncing", {{"name", printable(pair->title())}}));
    if (runner)
        return runner->runScheduled(*pair, run.request.trigger, run.details, run.control);
    SyncJobRequest request{.pair = *pair, .trigger = run.request.trigger, .details = run.details};
    request.isAttended = false;
    request.logsNothingToDo = true;
    return *runSync(request, run.dependencies, run.control).record;
}

} // namespace vh::automation
