#pragma once

#include "Automation/NodesRunner.h"
#include "Automation/Worker.h"
#include "Flows/NodesStore.h"

namespace vh::automation {

struct NodesRunner::State {
    State(const AutomationWorld& w, flows::NodesStore& s, NodesExecutor& e, const mail::MailSender& m)
        : world(w), store(s), executor(e), mail(m), worker(std::make_unique<Worker>(w.loop)) {}

    const AutomationWorld& world;
    flows::NodesStore& store;
    NodesExecutor& executor;
    const mail::MailSender& mail;
    std::map<Uuid, std::shared_ptr<Run>> runs; ///< by flow
    std::vector<std::weak_ptr<std::function<void(const Uuid&)>>> observers;
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
            values.timeZone = world.calendar.zone();
        }
        return values;
    }

    void notify(const Uuid& flow) {
        std::vector<std::shared_ptr<std::function<void(const Uuid&)>>> called;
        for (const auto& each : observers)
            if (auto observer = each.lock())
                called.push_back(std::move(observer));
        std::erase_if(observers, [](const auto& each) { return each.expired(); });
        for (const auto& observer : called)
            (*observer)(flow);
    }
};

} // namespace vh::automation
