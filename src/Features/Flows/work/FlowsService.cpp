#include "Features/Flows/work/FlowsService.h"

#include "Automation/Automation.h"
#include "Automation/ScheduledActions.h"
#include "Core/Codec.h"
#include "Features/Flows/NodesStore.h"
#include "Platform/Desktop.h"

#include <stdexcept>

namespace vh {

namespace automation {

namespace {

constexpr const char* toolID = "nodes";

/// A flow has ended in another process: what waits for it starts where automation is led.
struct FlowEnded {
    Uuid flow;
    flows::FlowNodeOutcome outcome = flows::FlowNodeOutcome::success;
    std::vector<Uuid> chain;
};

} // namespace

} // namespace automation

template <>
inline constexpr auto describe<automation::FlowEnded> = record(field("flow", &automation::FlowEnded::flow),
                                                               field("outcome",
                                                                     &automation::FlowEnded::outcome),
                                                               field("chain", &automation::FlowEnded::chain));

namespace automation {

FlowsService::FlowsService(Automation& automation)
    : automation_(automation),
      store_(std::make_unique<flows::NodesStore>(flows::NodesStore::folderOfUser(), automation.schedules(),
                                                 automation.dependencies().clock,
                                                 automation.dependencies().calendar)),
      executor_(std::make_unique<NodesExecutor>(automation.dependencies(), automation.actions(),
                                                automation.scripts(), automation.mail(), automation.desktop(),
                                                outpost_)),
      runner_(
          std::make_unique<NodesRunner>(automation.dependencies(), *store_, *executor_, automation.mail())) {
    runner_->setOnFinished([this](const flows::Flow& flow, flows::FlowNodeOutcome outcome,
                                  const std::vector<Uuid>& chain) { ended(flow, outcome, chain); });
    runner_->setOnActivity([this](const NodesRunner::Activity& activity) {
        if (activity.active)
            works_[activity.key] = {.key = activity.key,
                                    .title = activity.title,
                                    .toolID = toolID,
                                    .saidAs = "cli.serve.flow",
                                    .progress = activity.fraction};
        else
            works_.erase(activity.key);
        tell();
    });
    automation.actions().provide(flowAction, [this](const ActionRequest& request, const JobControl& control) {
        return runner_->runScheduled({.title = request.title, .payload = request.payload}, control.cancel);
    });
}

FlowsService::~FlowsService() {
    news_.reset();
    triggers_.reset();
    runner_->setOnFinished({});
    runner_->setOnActivity({});
}

FlowTriggers& FlowsService::triggers() {
    if (!triggers_) {
        triggers_ = std::make_unique<FlowTriggers>(automation_.dependencies(), *store_, *runner_,
                                                   automation_.desktop());
        triggers_->setOnTroubles([this] { tell(); });
    }
    return *triggers_;
}

void FlowsService::follow() {
    news_ = std::make_unique<FolderNews>(automation_.dependencies().loop, store_->folder(),
                                         [this] { store_->load(); });
}

void FlowsService::ended(const flows::Flow& flow, flows::FlowNodeOutcome outcome,
                         const std::vector<Uuid>& chain) {
    if (automation_.isLeading())
        triggers().finished(flow, outcome, chain);
    else
        automation_.tellLeader(*this, encodeJson(FlowEnded{flow.id, outcome, chain}));
}

void FlowsService::hear(const std::string& message) {
    const auto ended = decodeJson<FlowEnded>(message);
    if (const flows::Flow* flow = store_->anyFlow(ended.flow))
        triggers().finished(flows::Flow(*flow), ended.outcome, ended.chain);
}

std::vector<RunningWork> FlowsService::running() const {
    std::vector<RunningWork> all;
    for (const auto& [key, work] : works_)
        all.push_back(work);
    return all;
}

bool FlowsService::takesLink(const std::string& url) const {
    return flowOfLink(url).has_value();
}

std::optional<std::string> FlowsService::openLink(const std::string& url) {
    const Texts texts = automation_.dependencies().texts();
    store_->load();
    const auto refusal = runner_->runFromOutside(*flowOfLink(url), texts.text("nodes.event.link"));
    if (!refusal)
        return std::nullopt;
    try {
        automation_.desktop().notify(texts.text("sidebar.varnholt") + " – " + texts.text("sidebar.nodes"),
                                     *refusal);
    } catch (const std::runtime_error&) {
        // Nobody sits before this computer; who asked gets the answer.
    }
    return refusal;
}

} // namespace automation

} // namespace vh
