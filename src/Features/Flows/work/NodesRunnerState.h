#pragma once

#include "Automation/Worker.h"
#include "Core/Observers.h"
#include "Features/Flows/NodesStore.h"
#include "Features/Flows/work/NodesRunner.h"

namespace vh::automation {

struct NodesRunner::State {
    State(const AutomationDependencies& w, flows::NodesStore& s, NodesExecutor& e, const mail::MailSender& m)
        : dependencies(w), store(s), executor(e), mail(m), worker(std::make_unique<Worker>(w.loop)) {}

    const AutomationDependencies& dependencies;
    flows::NodesStore& store;
    NodesExecutor& executor;
    const mail::MailSender& mail;
    std::map<Uuid, std::shared_ptr<Run>> runs; ///< by flow
    Observers<const Uuid&> observers;
    std::function<void(const flows::Flow&, flows::FlowNodeOutcome, const std::vector<Uuid>&)> onFinished;
    std::function<void(const Activity&)> onActivity;
    std::unique_ptr<Worker> worker;

    /// Whether the flow runs, here or in another process. Throws SystemError.
    bool isTaken(const Uuid& flow) const { return runs.contains(flow) || !store.lockForRun(flow); }

    /// What the variables stand for; a run that is taken up again keeps what they stood for.
    flows::FlowValues valuesFor(const FlowStart& how, const std::optional<flows::FlowRun>& resumed,
                                Date startedAt) const {
        flows::FlowValues values = resumed && resumed->values ? *resumed->values : how.values;
        if (!resumed || !resumed->values) {
            values.date = startedAt;
            values.timeZone = dependencies.calendar.zone();
        }
        return values;
    }
};

} // namespace vh::automation
