#include "Features/Flows/work/NodesExecutor.h"

#include "Automation/ScriptLibrary.h"
#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Features/Flows/FlowExpansion.h"
#include "Features/Flows/work/NodeResults.h"
#include "Features/Flows/work/NodeThreads.h"
#include "Features/Flows/work/NodeWork.h"
#include "Platform/Desktop.h"
#include "Platform/MainLoop.h"

#include <algorithm>
#include <atomic>
#include <chrono>

namespace vh::automation {

using namespace flows;

struct NodesExecutor::State {
    NodeWork::Parts parts;
    Desktop& desktop;
    FlowOutpost& outpost;
};

namespace {

/// How long the main loop may take to show a notification.
constexpr int64_t notifyLimitSeconds = 60;

/// Under which tool a node's work on this computer stands in the log; tools, copies and mail leave their records
/// themselves.
std::string loggedTool(const FlowNodeKind& kind) {
    return std::holds_alternative<ScriptNode>(kind) ? "scripts" : "";
}

/// The nodes of one run.
class RunExecutor : public FlowExecutor {
public:
    RunExecutor(const NodeWork::Parts& parts, Desktop& desktop, FlowOutpost& outpost, FlowRunContext context)
        : parts_(parts), desktop_(desktop), outpost_(outpost), context_(std::move(context)) {}

    void run(const FlowStep& step, const CancelToken& cancel, Done done) override {
        const auto began = std::chrono::steady_clock::now();
        Done finish = [began, done = std::move(done)](FlowNodeResult result) {
            result.seconds = Seconds(std::chrono::steady_clock::now() - began).count();
            done(std::move(result));
        };
        FlowNodeKind kind;
        try {
            kind = expanding(step.node.kind, context_.values);
        } catch (const NoValue& missing) {
            return finish(failure({"nodes.fail.no-value", {{"variable", missing.what()}}},
                                  parts_.dependencies.texts()));
        }
        if (const auto* node = std::get_if<WaitNode>(&kind))
            return wait(node->seconds, cancel, std::move(finish));
        if (const auto* node = std::get_if<NotifyNode>(&kind))
            return notify(step.flow.name, node->message, cancel, std::move(finish));
        threads_.run([this, &step, &cancel, kind = std::move(kind), finish = std::move(finish)] {
            finish(loggedResult(step, kind, cancel));
        });
    }

    std::optional<std::string> lane(const FlowNode& node, const FlowComputer& computer) const override {
        if (!runsOnComputer(node.kind))
            return std::nullopt;
        const auto* machine = std::get_if<FlowMachine>(&computer);
        return machine ? "machine-" + machine->id : "this-mac";
    }

private:
    NodeWaits& waits(const CancelToken& cancel) {
        if (!waits_)
            waits_ = std::make_unique<NodeWaits>(cancel);
        return *waits_;
    }

    void wait(int64_t seconds, const CancelToken& cancel, Done finish) {
        waits(cancel).wait(seconds, [finish = std::move(finish)](NodeWaits::End end) {
            finish({end == NodeWaits::End::elapsed ? FlowNodeOutcome::success : FlowNodeOutcome::cancelled});
        });
    }

    /// On the main thread, which may be busy or about to end: whoever comes first, it, the stop or the limit, decides.
    void notify(const std::string& title, const std::string& text, const CancelToken& cancel, Done finish) {
        const auto isDecided = std::make_shared<std::atomic_flag>();
        const std::string failed = parts_.dependencies.texts().text("nodes.notify-failed");
        waits(cancel).wait(notifyLimitSeconds, [isDecided, finish, failed](NodeWaits::End end) {
            if (isDecided->test_and_set())
                return;
            if (end == NodeWaits::End::cancelled)
                finish({FlowNodeOutcome::cancelled});
            else
                finish({FlowNodeOutcome::warning, failed});
        });
        parts_.dependencies.loop.post([isDecided, finish, failed, title, text, &desktop = desktop_] {
            if (isDecided->test_and_set())
                return;
            try {
                desktop.notify(title, text);
                finish({FlowNodeOutcome::success});
            } catch (const std::exception& error) {
                finish({FlowNodeOutcome::warning, failed, error.what()});
            }
        });
    }

    FlowNodeResult loggedResult(const FlowStep& step, const FlowNodeKind& kind,
                                const CancelToken& cancel) const {
        const std::string tool = loggedTool(kind);
        if (tool.empty() || isElsewhere(step, kind))
            return result(step, kind, cancel);
        const auto handle =
            parts_.dependencies.runs.log.begin(tool, Trigger::flow, {{RunDetail::flow, step.flow.name}});
        FlowNodeResult done = result(step, kind, cancel);
        const auto* script = std::get_if<ScriptNode>(&kind);
        const double errors = done.outcome == FlowNodeOutcome::failed ? 1 : 0;
        const Messages said =
            script ? Messages{{"run.named", {{"name", printable(script->name)}, {"text", done.sentences}}}}
                   : done.sentences;
        handle->finish(logOutcome(done.outcome), RunWords(said, parts_.dependencies.texts()),
                       {{RunMetric::errors, errors}});
        return done;
    }

    FlowNodeResult result(const FlowStep& step, const FlowNodeKind& kind, const CancelToken& cancel) const {
        try {
            return perform(step, kind, cancel);
        } catch (const Cancelled&) {
            return nodeResult(FlowNodeOutcome::cancelled, {"nodes.stopped", {}}, parts_.dependencies.texts());
        } catch (const std::exception& error) {
            return failure(messageOf(error), parts_.dependencies.texts());
        }
    }

    static bool isElsewhere(const FlowStep& step, const FlowNodeKind& kind) {
        return runsOnComputer(kind) && std::holds_alternative<FlowMachine>(step.computer);
    }

    FlowNodeResult perform(const FlowStep& step, const FlowNodeKind& kind, const CancelToken& cancel) const {
        const bool isAway = isElsewhere(step, kind);
        const NodeWork work(parts_, context_, step, cancel);
        if (const auto* email = std::get_if<EmailNode>(&kind))
            return work.doEmail(email->email);
        if (const auto* tool = std::get_if<ToolNode>(&kind); tool && !isAway)
            return work.doTool(tool->tool);
        if (const auto* script = std::get_if<ScriptNode>(&kind); script && !isAway)
            return work.doScript(script->name);
        if (std::holds_alternative<CopyNode>(kind) && !isAway)
            return work.doCopy(std::get<CopyNode>(step.node.kind));
        return outpost_.run(step, kind, parts_.dependencies.texts(), cancel);
    }

    const NodeWork::Parts parts_;
    Desktop& desktop_;
    FlowOutpost& outpost_;
    const FlowRunContext context_;
    std::unique_ptr<NodeWaits> waits_;
    NodeThreads threads_;
};

} // namespace

NodesExecutor::NodesExecutor(const AutomationDependencies& dependencies, const ScheduledActions& actions,
                             const ScriptLibrary& scripts, const mail::MailSender& mail, Desktop& desktop,
                             FlowOutpost& outpost)
    : state_(std::make_unique<State>(State{{dependencies, actions, scripts, mail}, desktop, outpost})) {}

NodesExecutor::~NodesExecutor() = default;

std::unique_ptr<FlowExecutor> NodesExecutor::forRun(FlowRunContext context) {
    return std::make_unique<RunExecutor>(state_->parts, state_->desktop, state_->outpost, std::move(context));
}

bool NodesExecutor::usesNetwork(const Flow& flow) {
    return std::ranges::any_of(flow.nodes, [](const FlowNode& node) {
        const auto* computer = std::get_if<ComputerNode>(&node.kind);
        return computer && std::holds_alternative<FlowMachine>(computer->computer);
    });
}

} // namespace vh::automation
