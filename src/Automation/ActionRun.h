#pragma once

#include "Automation/ScheduledActions.h"
#include "Core/RunWords.h"
#include "Core/Texts.h"

namespace vh {
class RunHandle;
}

namespace vh::automation {

/// One run of one action, from its beginning in the log to its record. The thread that runs it.
class ActionRun {
public:
    ActionRun(const AutomationDependencies& dependencies, const ActionRequest& request,
              const JobControl& control);

    const AutomationDependencies& dependencies;
    const ActionRequest& request;
    const JobControl& control;
    const Texts texts;
    const RunDetails details; ///< those of the request and of its payload

    /// What `work` throws becomes the record.
    RunRecord run(const std::function<RunRecord(ActionRun&)>& work);
    RunRecord finish(Outcome outcome, RunWords words, const RunMetrics& metrics = {},
                     const RunDetails& details = {});
    RunRecord finish(Outcome outcome, Message said) {
        return finish(outcome, RunWords({std::move(said)}, texts));
    }
    RunRecord fail(const Message& why);

private:
    const std::shared_ptr<RunHandle> run_;
};

/// Everything that the module of the action's name finds goes to the Trash; an ActionRow's `run`.
RunRecord cleanWithModule(ActionRun& run);
/// Whether there is a module to clean with; an ActionRow's `isThere`.
template <ScheduledAction action>
bool hasModule(const AutomationDependencies& dependencies) {
    return dependencies.module(rawValue(action)) != nullptr;
}

} // namespace vh::automation
