#pragma once

#include "Automation/AutomationWorld.h"
#include "Core/JobControl.h"
#include "Core/RunRecord.h"
#include "Core/ScheduledTask.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace vh::sync {
struct SyncPair;
}

namespace vh::automation {

/// What a scheduled action is handed.
struct ActionRequest {
    std::string toolID;
    std::map<std::string, std::string> payload;
    Trigger trigger = Trigger::scheduled;
    RunDetails details;
    /// Of the run that this is a step of, which stands for it in the log and lists what it touches.
    std::shared_ptr<RunJournal> within = nullptr;
};

/// Runs the tools that a schedule or a flow can start: one table, a row an action. Everything blocks, never throws and
/// ends as one run record; an action whose tool is not there yet ends as a failed one that says so. Any thread.
class ScheduledActions {
public:
    /// Runs the flow that a task's payload names; given by whoever runs flows.
    using RunFlow = std::function<RunRecord(const ScheduledTask& task, const JobControl& control)>;

    /// Does what the one button does, as the person chose it.
    using RunOptimize =
        std::function<RunRecord(Trigger trigger, const JobControl& control, const RunDetails& details)>;

    /// Syncs a pair of folders and shows it while it runs; without it nobody is shown.
    using RunSync = std::function<RunRecord(const sync::SyncPair& pair, Trigger trigger,
                                            const RunDetails& details, const JobControl& control)>;

    explicit ScheduledActions(const AutomationWorld& world) : world_(world) {}
    void setRunFlow(RunFlow runFlow) { runFlow_ = std::move(runFlow); }
    void setRunOptimize(RunOptimize runOptimize) { runOptimize_ = std::move(runOptimize); }
    void setRunSync(RunSync runSync) { runSync_ = std::move(runSync); }

    RunRecord run(const ScheduledTask& task, Trigger trigger, const JobControl& control) const;
    RunRecord run(ScheduledAction action, const ActionRequest& request, const JobControl& control) const;
    /// False for one whose tool is not there yet.
    bool isThere(ScheduledAction action) const;

private:
    const AutomationWorld& world_;
    RunFlow runFlow_;
    RunOptimize runOptimize_;
    RunSync runSync_;
};

} // namespace vh::automation
