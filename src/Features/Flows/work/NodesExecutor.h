#pragma once

#include "Automation/AutomationDependencies.h"
#include "Features/Flows/FlowExecutor.h"
#include "Features/Flows/FlowValues.h"

#include <functional>
#include <memory>
#include <string>

namespace vh {
class Desktop;
}
namespace vh::mail {
class MailSender;
}

namespace vh::automation {

class ScheduledActions;
class ScriptLibrary;

/// The node kinds that need other machines or a model. What is not there yet answers with a text of the "nodes.fail."
/// family; later code takes its place. Blocking, any thread.
class FlowOutpost {
public:
    virtual ~FlowOutpost() = default;
    virtual flows::FlowNodeResult run(const flows::FlowStep& step, const flows::FlowNodeKind& expanded,
                                      const Texts& texts, const CancelToken& cancel);
};

/// What one run's nodes share. A script finds it in its environment: VARNHOLT_FLOW (the flow's name), VARNHOLT_FILES
/// (one a line), VARNHOLT_FOLDER, VARNHOLT_DISK and VARNHOLT_DISK_NAME, each only where the run has a value. The files
/// are on its standard input, too, one a line; a list too long for the environment is there alone. It starts in the
/// person's home.
struct FlowRunContext {
    flows::FlowValues values;
    Date startedAt;
    /// What a node says of itself while it works. Any thread.
    std::function<void(const Uuid& node, const std::string& text)> report;
};

/// Does the work of nodes on this computer. Any thread.
class NodesExecutor {
public:
    NodesExecutor(const AutomationDependencies& dependencies, const ScheduledActions& actions,
                  const ScriptLibrary& scripts, const mail::MailSender& mail, Desktop& desktop,
                  FlowOutpost& outpost);
    ~NodesExecutor();

    /// The executor of one run; it must outlive the engine's run.
    std::unique_ptr<flows::FlowExecutor> forRun(FlowRunContext context);
    /// Whether any node works on another computer.
    static bool usesNetwork(const flows::Flow& flow);

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// What a node would do, in a line for people; `kind` has the values that are known.
std::string planText(const AutomationDependencies& dependencies, const flows::FlowNodeKind& kind,
                     const Texts& texts);

} // namespace vh::automation
