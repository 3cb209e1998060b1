#pragma once

#include "Automation/AutomationDependencies.h"
#include "Core/RunRecord.h"
#include "Core/ScheduledTask.h"
#include "Features/Flows/FlowEngine.h"
#include "Features/Flows/FlowProblem.h"
#include "Features/Flows/FlowRun.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vh::flows {
class NodesStore;
}
namespace vh::mail {
class MailSender;
}

namespace vh::automation {

class NodesExecutor;

/// How a flow is to be started.
struct FlowStart {
    flows::FlowRunTrigger trigger = flows::FlowRunTrigger::manual;
    std::optional<std::string> event; ///< what fired it, for people
    flows::FlowValues values;         ///< its date is set by the runner
    std::vector<Uuid> chain;          ///< flows that ran before it, one started by the other
    std::optional<Uuid> resume;       ///< a run of this flow whose good results are kept
};

/// A run that ended.
struct FlowRunEnd {
    flows::FlowRun run;
    RunRecord record;
};

/// What a node would do, for a dry run.
struct FlowPlanLine {
    Uuid node;
    std::string title;
    std::string text; ///< with its variables filled in where they have a value
};

/// Runs flows, one run of a flow at a time among all processes, different flows side by side. Each run leaves a FlowRun
/// in the store and a record of the tool "nodes" in the log. Main thread.
class NodesRunner {
public:
    using Done = std::function<void(const FlowRunEnd&)>;

    NodesRunner(const AutomationDependencies& dependencies, flows::NodesStore& store, NodesExecutor& executor,
                const mail::MailSender& mail);
    /// Stops what runs and waits for it.
    ~NodesRunner();

    /// False when it cannot be started: it runs already, here or elsewhere, it has blockers, the run to resume is not
    /// there, or the flows' folder cannot be written. It runs as it is now, whatever becomes of the flow meanwhile.
    bool start(const flows::Flow& flow, const FlowStart& how, Done done = {});
    /// Nothing when it was started, else why not, for people.
    std::optional<std::string> runFromOutside(const Uuid& id, const std::string& event);
    /// For the scheduler: blocks until the flow has ended. Not on the main thread.
    RunRecord runScheduled(const ScheduledTask& task, const CancelToken& cancel);
    void stop(const Uuid& flow);
    void stopAll();
    /// Runs whose process was killed get their failed records.
    void recordInterrupted();

    /// Here or in another process; also when that cannot be found out.
    bool isRunning(const Uuid& flow) const;
    std::vector<flows::FlowProblem> blockers(const flows::Flow& flow) const;
    std::vector<flows::FlowProblem> problems(const flows::Flow& flow) const;
    /// Why start would refuse, for people; nothing when it would not.
    std::optional<std::string> refusal(const flows::Flow& flow) const;
    std::optional<Message> refusalMessage(const flows::Flow& flow) const;
    /// What start would do, node by node in the order in which they could run; changes nothing.
    std::vector<FlowPlanLine> plan(const flows::Flow& flow, const FlowStart& how) const;

    /// Of this process's runs; kept after the end until the next start.
    const std::map<Uuid, std::map<Uuid, flows::FlowNodeState>>& live() const { return live_; }
    /// What nodes that run say of themselves.
    const std::map<Uuid, std::map<Uuid, std::string>>& progress() const { return progress_; }

    /// Called on the main thread with the flow that changed, until the token goes.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void(const Uuid& flow)> observer);
    /// Told of each run's end after its record, with the flow and the chain it ran in.
    void setOnFinished(
        std::function<void(const flows::Flow&, flows::FlowNodeOutcome, const std::vector<Uuid>& chain)> f);
    /// The same news, as the list of what runs wants them: key "nodes-<uuid>", title, whether it goes on.
    struct Activity {
        std::string key;
        std::string title;
        bool active = true;
        std::optional<double> fraction;
    };
    void setOnActivity(std::function<void(const Activity&)> f);

private:
    struct State;
    struct Run;
    struct Request;
    std::shared_ptr<Run> makeRun(const flows::Flow& flow, const FlowStart& how, Done done);
    void begin(const std::shared_ptr<Run>& run);
    void takeNews(Run& run);
    void end(const std::shared_ptr<Run>& run);
    void tell(const Run& run, bool active);
    void decide(Request& request, const ScheduledTask& task);
    RunRecord refused(const ScheduledTask& task, Outcome outcome, const Message& why) const;
    std::map<Uuid, std::map<Uuid, flows::FlowNodeState>> live_;
    std::map<Uuid, std::map<Uuid, std::string>> progress_;
    std::unique_ptr<State> state_;
};

} // namespace vh::automation
