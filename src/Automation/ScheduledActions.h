#pragma once

#include "Automation/AutomationWorld.h"
#include "Core/JobControl.h"
#include "Core/RunRecord.h"
#include "Core/ScheduledTask.h"

#include <functional>
#include <map>
#include <string>

namespace vh::automation {

/// What a scheduled action is handed.
struct ActionRequest {
    std::string toolID;
    std::map<std::string, std::string> payload;
    Trigger trigger = Trigger::scheduled;
    RunDetails details;
};

/// Runs the tools that a schedule or a flow can start: one table, a row an action. Everything blocks, never throws and
/// ends as one run record; an action whose tool is not there yet ends as a failed one that says so. Any thread.
class ScheduledActions {
public:
    /// Runs the flow that a task's payload names; given by whoever runs flows.
    using RunFlow = std::function<RunRecord(const ScheduledTask& task, const JobControl& control)>;

    explicit ScheduledActions(const AutomationWorld& world) : world_(world) {}
    void setRunFlow(RunFlow runFlow) { runFlow_ = std::move(runFlow); }

    RunRecord run(const ScheduledTask& task, Trigger trigger, const JobControl& control) const;
    RunRecord run(ScheduledAction action, const ActionRequest& request, const JobControl& control) const;

private:
    const AutomationWorld& world_;
    RunFlow runFlow_;
};

} // namespace vh::automation
