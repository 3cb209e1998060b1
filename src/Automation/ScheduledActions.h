#pragma once

#include "Automation/AutomationDependencies.h"
#include "Automation/Offer.h"
#include "Core/JobControl.h"
#include "Core/RunRecord.h"
#include "Core/ScheduledTask.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace vh::automation {

/// Copies ActionRequest::sources into the payload's "folder", which is made where it is missing; a name that is taken is
/// numbered. Flows ask for it; a schedule has no such action.
inline constexpr std::string_view copyAction = "copy";

/// What an action is handed.
struct ActionRequest {
    std::string actionID; ///< raw value of a ScheduledAction
    std::string toolID;
    std::string title; ///< of the task, where it is one
    std::map<std::string, std::string> payload;
    Trigger trigger = Trigger::scheduled;
    RunDetails details;
    std::vector<std::string> sources = {}; ///< absolute; of a copy
    /// Of the run that this is a step of, which stands for it in the log and lists what it touches.
    std::shared_ptr<RunJournal> within = nullptr;
};

/// The details of a request, with what its payload says of where it comes from.
RunDetails detailsOf(const ActionRequest& request);

/// Runs what a schedule or a flow can start, by the rows of the features. Everything blocks, never throws and ends as one
/// run record; an action whose tool is not there ends as a failed one that says so. Any thread.
class ScheduledActions {
public:
    explicit ScheduledActions(const AutomationDependencies& dependencies) : dependencies_(dependencies) {}

    /// A service of this process runs the action itself, in the place of its row. Before anything runs.
    using Run = std::function<RunRecord(const ActionRequest& request, const JobControl& control)>;
    void provide(std::string_view actionID, Run run);

    RunRecord run(const ScheduledTask& task, Trigger trigger, const JobControl& control) const;
    RunRecord run(std::string_view actionID, const ActionRequest& request, const JobControl& control) const;
    RunRecord run(ScheduledAction action, const ActionRequest& request, const JobControl& control) const;
    /// False for one whose tool is not there.
    bool isThere(ScheduledAction action) const;
    /// What a form asks for; none for an unknown action.
    std::span<const PayloadField> fields(std::string_view actionID) const;

private:
    const ActionRow* rowOf(std::string_view actionID) const;
    RunRecord runAction(const ActionRequest& request, const JobControl& control) const;

    const AutomationDependencies& dependencies_;
    std::map<std::string, Run, std::less<>> provided_;
};

} // namespace vh::automation
