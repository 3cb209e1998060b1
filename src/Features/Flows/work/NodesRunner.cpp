#include "Features/Flows/work/NodesRunner.h"

#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Features/Flows/FlowTexts.h"
#include "Features/Flows/work/NodesExecutor.h"
#include "Features/Flows/work/NodesRun.h"
#include "Features/Flows/work/NodesRunnerState.h"
#include "Mail/MailSender.h"
#include "Platform/SystemError.h"

#include <algorithm>

namespace vh::automation {

using namespace flows;

NodesRunner::NodesRunner(const AutomationDependencies& dependencies, NodesStore& store,
                         NodesExecutor& executor, const mail::MailSender& mail)
    : state_(std::make_unique<State>(dependencies, store, executor, mail)) {}

NodesRunner::~NodesRunner() {
    stopAll();
    state_->worker.reset();
    state_->onFinished = {};
    state_->onActivity = {};
    state_->observers = {};
    while (!state_->runs.empty()) {
        const auto run = state_->runs.begin()->second; // a copy, since it goes from the list
        end(run);
    }
}

bool NodesRunner::start(const Flow& flow, const FlowStart& how, Done done) {
    std::shared_ptr<Run> run;
    try {
        recordInterrupted();
        if (!refusal(flow))
            run = makeRun(flow, how, std::move(done));
    } catch (const SystemError&) {
        // refusal says it to whoever asks.
    }
    if (run)
        begin(run);
    return run != nullptr;
}

/// Nothing when another process was quicker, or when there is nothing to resume.
std::shared_ptr<NodesRunner::Run> NodesRunner::makeRun(const Flow& flow, const FlowStart& how, Done done) {
    const AutomationDependencies& dependencies = state_->dependencies;
    std::optional<FlowRun> resumed;
    if (how.resume) {
        resumed = state_->store.run(flow.id, *how.resume);
        if (!resumed)
            return nullptr;
    }
    FileLock lock = state_->store.lockForRun(flow.id);
    if (!lock)
        return nullptr;
    auto run = std::make_shared<Run>(flow, how, std::move(lock), std::move(done));
    run->run.id = Uuid::random();
    run->run.flowID = flow.id;
    run->run.startedAt = dependencies.clock();
    run->run.trigger = how.trigger;
    run->run.event = how.event;
    run->run.values = state_->valuesFor(how, resumed, run->run.startedAt);
    if (resumed) {
        run->run.resumed = resumed->id;
        run->run.results = resultsToKeep(flow, resumed->results);
    }
    run->words.emplace(
        Messages{{"nodes.run-summary", {{"name", printable(flow.name)}, {"count", flow.nodes.size()}}}},
        dependencies.texts());
    run->handle = dependencies.runs.log.begin(
        "nodes", logTrigger(how.trigger),
        {{RunDetail::flow, flow.name}, {RunDetail::event, how.event.value_or("")}});
    return run;
}

void NodesRunner::begin(const std::shared_ptr<Run>& run) {
    const Uuid id = run->flow.id;
    state_->runs[id] = run;
    live_[id].clear();
    progress_[id].clear();
    for (const auto& [node, result] : run->run.results)
        live_[id].emplace(node, result);
    run->finishedNodes = run->run.results.size();
    try {
        state_->store.noteStarted(run->run);
    } catch (const SystemError&) {
        // A kill would leave nothing of the run; that is no reason not to run.
    }
    const auto addNews = [this, weak = std::weak_ptr(run), worker = state_->worker.get()](Run::News news) {
        const auto alive = weak.lock();
        if (alive && alive->addNews(std::move(news)))
            worker->post([this, alive] { takeNews(*alive); });
    };
    run->executor = state_->executor.forRun(
        {*run->run.values, run->run.startedAt, [addNews](const Uuid& node, const std::string& text) {
             addNews({node, text});
         }});
    tell(*run, true);
    state_->worker->run(
        [run, addNews, &store = state_->store, clock = state_->dependencies.clock] {
            const auto update = [&](const Uuid& node, const FlowNodeState& state) {
                try {
                    if (const auto* result = std::get_if<FlowNodeResult>(&state))
                        store.noteResult(run->run, node, *result);
                } catch (const SystemError&) {
                    // As above.
                }
                addNews({node, state});
            };
            const FlowResults kept = run->run.results;
            run->run.results = FlowEngine::run(run->flow, *run->executor, update, run->cancel, kept);
            run->run.finishedAt = clock();
            run->executor.reset();
            const std::lock_guard hold(run->mutex);
            run->isWorkOver = true;
            run->changed.notify_all();
        },
        [this, run] { end(run); });
}

void NodesRunner::takeNews(Run& run) {
    std::vector<Run::News> news;
    {
        const std::lock_guard hold(run.mutex);
        news.swap(run.news);
    }
    if (news.empty())
        return;
    auto& live = live_[run.flow.id];
    auto& progress = progress_[run.flow.id];
    for (Run::News& each : news) {
        if (auto* text = std::get_if<std::string>(&each.what)) {
            progress[each.node] = std::move(*text);
            continue;
        }
        auto& state = std::get<FlowNodeState>(each.what);
        if (std::holds_alternative<FlowNodeResult>(state)) {
            progress.erase(each.node);
            ++run.finishedNodes;
        }
        live.insert_or_assign(each.node, std::move(state));
    }
    tell(run, true);
}

void NodesRunner::end(const std::shared_ptr<Run>& run) {
    takeNews(*run);
    progress_[run->flow.id].clear();
    try {
        state_->store.record(run->run);
    } catch (const SystemError&) {
        // The log tells of the run all the same.
    }
    const RunRecord record = run->finishRecord();
    run->lock.reset();
    state_->runs.erase(run->flow.id);
    {
        const std::lock_guard hold(run->mutex);
        run->record = record;
        run->changed.notify_all();
    }
    tell(*run, false);
    const bool isGoing = !state_->worker; // this object is on its way out
    if (state_->onFinished)
        state_->onFinished(run->flow, run->run.outcome(run->flow), run->how.chain);
    if (run->done && !isGoing)
        run->done({run->run, record});
}

void NodesRunner::tell(const Run& run, bool active) {
    if (state_->onActivity) {
        const size_t all = std::max<size_t>(run.flow.nodes.size(), 1);
        state_->onActivity({"nodes-" + run.flow.id.text(), run.flow.name, active,
                            static_cast<double>(run.finishedNodes) / static_cast<double>(all)});
    }
    state_->observers.tell(run.flow.id);
}

void NodesRunner::stop(const Uuid& flow) {
    const auto found = state_->runs.find(flow);
    if (found != state_->runs.end())
        found->second->cancel.cancel();
}

void NodesRunner::stopAll() {
    for (const auto& [flow, run] : state_->runs)
        run->cancel.cancel();
}

void NodesRunner::recordInterrupted() {
    const AutomationDependencies& dependencies = state_->dependencies;
    for (const FlowRun& run : state_->store.takeInterrupted()) {
        const Flow* flow = state_->store.anyFlow(run.flowID);
        const std::string name = flow ? flow->name : run.flowID.text();
        RunRecord record;
        record.id = Uuid::random();
        record.toolID = "nodes";
        record.startedAt = run.startedAt;
        record.outcome = Outcome::failed;
        record.trigger = logTrigger(run.trigger);
        RunWords words({{"nodes.interrupted", {{"name", printable(name)}}}}, dependencies.texts());
        record.summary = std::move(words.summary);
        record.facts = std::move(words.facts);
        record.computer = RunLog::thisComputer();
        record.details = rawDetails({{RunDetail::flow, name}, {RunDetail::event, run.event.value_or("")}});
        for (const auto& [node, result] : run.results)
            record.duration += result.seconds;
        dependencies.runs.log.record(record);
    }
}

bool NodesRunner::isRunning(const Uuid& flow) const {
    try {
        return state_->isTaken(flow);
    } catch (const SystemError&) {
        return true; // without its lock a flow could run twice
    }
}

std::vector<FlowProblem> NodesRunner::problems(const Flow& flow) const {
    return flows::problems(flow, state_->mail.isReady() ? MailState::ready : MailState::notReady);
}

std::vector<FlowProblem> NodesRunner::blockers(const Flow& flow) const {
    auto found = problems(flow);
    std::erase_if(found, [](const FlowProblem& problem) { return !problem.blocks(); });
    return found;
}

std::optional<std::string> NodesRunner::refusal(const Flow& flow) const {
    const auto message = refusalMessage(flow);
    return message ? std::optional(worded(*message, state_->dependencies.texts())) : std::nullopt;
}

std::optional<Message> NodesRunner::refusalMessage(const Flow& flow) const {
    try {
        if (state_->isTaken(flow.id))
            return Message{"nodes.already-running", {{"name", printable(flow.name)}}};
    } catch (const SystemError& error) {
        return messageOf(error);
    }
    if (const auto found = blockers(flow); !found.empty())
        return Message::literal(problemsText(flow, found, state_->dependencies.texts()));
    return std::nullopt;
}

std::shared_ptr<void> NodesRunner::observe(std::function<void(const Uuid& flow)> observer) {
    return state_->observers.add(std::move(observer));
}

void NodesRunner::setOnFinished(
    std::function<void(const Flow&, FlowNodeOutcome, const std::vector<Uuid>& chain)> f) {
    state_->onFinished = std::move(f);
}

void NodesRunner::setOnActivity(std::function<void(const Activity&)> f) {
    state_->onActivity = std::move(f);
}

} // namespace vh::automation
