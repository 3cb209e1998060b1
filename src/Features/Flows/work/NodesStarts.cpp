#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Features/Flows/FlowExpansion.h"
#include "Features/Flows/FlowGraph.h"
#include "Features/Flows/FlowTexts.h"
#include "Features/Flows/work/NodesExecutor.h"
#include "Features/Flows/work/NodesRun.h"
#include "Features/Flows/work/NodesRunnerState.h"

#include <chrono>

namespace vh::automation {

using namespace flows;

/// A start asked for by another thread, which waits for the main thread's answer.
struct NodesRunner::Request {
    std::mutex mutex;
    std::condition_variable changed;
    bool isAbandoned = false;
    std::shared_ptr<Run> run;
    std::optional<Message> refusal;
};

namespace {

/// How soon a thread that waits notices a stop.
constexpr std::chrono::milliseconds pollsCancel{50};

template <class Holds>
void waitUnlessCancelled(std::mutex& mutex, std::condition_variable& changed, const CancelToken& cancel,
                         Holds holds) {
    std::unique_lock hold(mutex);
    while (!holds() && !cancel.isCancelled())
        changed.wait_for(hold, pollsCancel);
}

std::optional<Uuid> flowOf(const ScheduledTask& task) {
    const auto named = task.payload.find("flow");
    return named == task.payload.end() ? std::nullopt : Uuid::parse(named->second);
}

/// A dry run has no values for what only an event brings: there the variables stand for themselves.
FlowValues withTokens(FlowValues values, Language language) {
    const auto fill = [&](auto& value, FlowVariable variable) {
        if (!value)
            value = {tokenOf(variable, language)};
    };
    fill(values.disk, FlowVariable::disk);
    fill(values.diskName, FlowVariable::diskName);
    fill(values.folder, FlowVariable::folder);
    if (!values.files)
        values.files = std::vector{tokenOf(FlowVariable::files, language)};
    return values;
}

} // namespace

std::optional<std::string> NodesRunner::runFromOutside(const Uuid& id, const std::string& event) {
    const Texts texts = state_->dependencies.texts();
    state_->store.load();
    const Flow* found = state_->store.anyFlow(id);
    if (!found)
        return texts.text("nodes.missing-flow");
    const Flow flow = *found;
    const FlowTrigger* trigger = flow.start();
    if (!trigger || !std::holds_alternative<OnExternal>(*trigger))
        return texts.text("nodes.external.not-allowed", {{"name", printable(flow.name)}});
    if (auto why = refusal(flow))
        return why;
    if (!start(flow, {.trigger = FlowRunTrigger::external, .event = event}))
        return texts.text("nodes.already-running", {{"name", printable(flow.name)}});
    return std::nullopt;
}

/// Starts the task's flow, or says why not. Main thread.
void NodesRunner::decide(Request& request, const ScheduledTask& task) {
    const std::lock_guard hold(request.mutex);
    if (request.isAbandoned)
        return;
    state_->store.load();
    const auto id = flowOf(task);
    const Flow* found = id ? state_->store.anyFlow(*id) : nullptr;
    if (!found) {
        request.refusal = Message{"nodes.missing-flow", {}};
    } else {
        const Flow flow = *found;
        request.refusal = refusalMessage(flow);
        if (!request.refusal && start(flow, {.trigger = FlowRunTrigger::scheduled}))
            request.run = state_->runs.at(flow.id);
        else if (!request.refusal)
            request.refusal = Message{"nodes.already-running", {{"name", printable(flow.name)}}};
    }
    request.changed.notify_all();
}

RunRecord NodesRunner::refused(const ScheduledTask& task, Outcome outcome, const Message& why) const {
    return state_->dependencies.runs.log.begin("nodes", Trigger::scheduled, {{RunDetail::flow, task.title}})
        ->finish(outcome, RunWords({why}, state_->dependencies.texts()));
}

RunRecord NodesRunner::runScheduled(const ScheduledTask& task, const CancelToken& cancel) {
    const auto request = std::make_shared<Request>();
    state_->worker->post([this, request, task] { decide(*request, task); });
    waitUnlessCancelled(request->mutex, request->changed, cancel,
                        [&] { return request->run || request->refusal; });
    std::shared_ptr<Run> run;
    {
        const std::lock_guard hold(request->mutex);
        request->isAbandoned = true;
        run = request->run;
    }
    if (!run)
        return request->refusal ? refused(task, Outcome::failed, *request->refusal)
                                : refused(task, Outcome::cancelled, {"nodes.stopped", {}});
    waitUnlessCancelled(run->mutex, run->changed, cancel, [&] { return run->record.has_value(); });
    if (cancel.isCancelled())
        run->cancel.cancel();
    // The main thread may wait for this one by now: when the work is over, the record need not wait for it.
    std::unique_lock hold(run->mutex);
    run->changed.wait(hold, [&] { return run->record || run->isWorkOver; });
    if (run->record)
        return *run->record;
    hold.unlock();
    return run->finishRecord();
}

std::vector<FlowPlanLine> NodesRunner::plan(const Flow& flow, const FlowStart& how) const {
    const AutomationDependencies& dependencies = state_->dependencies;
    const Texts texts = dependencies.texts();
    std::optional<FlowRun> resumed;
    if (how.resume)
        resumed = state_->store.run(flow.id, *how.resume);
    const FlowResults kept = resumed ? resultsToKeep(flow, resumed->results) : FlowResults();
    const FlowValues values =
        withTokens(state_->valuesFor(how, resumed, dependencies.clock()), texts.language());
    const FlowGraph graph(flow);
    std::vector<bool> isReached(flow.nodes.size());
    std::vector<FlowPlanLine> lines;
    for (const size_t at : graph.order()) {
        const FlowNode& node = flow.nodes[at];
        isReached[at] = std::holds_alternative<StartNode>(node.kind);
        for (const FlowGraph::Input& input : graph.nodes()[at].inputs)
            isReached[at] = isReached[at] || isReached[input.from];
        if (isReached[at] && !kept.contains(node.id))
            lines.push_back(
                {node.id, titleOf(node, texts), planText(dependencies, expanding(node.kind, values), texts)});
    }
    return lines;
}

} // namespace vh::automation
