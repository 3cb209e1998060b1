#include "Features/Flows/view/FlowEditorViewModel.h"

#include "Automation/Automation.h"
#include "Automation/ScriptLibrary.h"
#include "Core/Printable.h"
#include "Features/Flows/NodesStore.h"
#include "Features/Flows/work/FlowsService.h"
#include "Features/Flows/work/NodesRunner.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/DayTexts.h"
#include "app/Options.h"
#include "app/Session.h"

#include <algorithm>
#include <fmt/format.h>

/// What the editor shows, made anew from the flow, its runs and what goes on.
namespace vh::app {

using namespace flows;

FlowWords FlowEditorViewModel::words() const {
    return {context_.texts().current(), context_.session().folders().home};
}

void FlowEditorViewModel::retell() {
    if (!document_)
        return;
    scene_.forgetWords();
    refresh();
    refreshRuns();
    emit opened();
}

void FlowEditorViewModel::followStore() {
    if (!document_)
        return;
    auto& store = service_.store();
    if (!readOnly_)
        document_->catchUp();
    else if (const Flow* theirs = store.anyFlow(flow().id); theirs && *theirs != flow())
        document_.emplace(store, Flow(*theirs));
    refresh();
    refreshRuns();
    emit stateChanged();
}

void FlowEditorViewModel::followRunner(const Uuid& id) {
    if (!document_ || id != flow().id)
        return;
    readState();
    refreshCanvas();
    refreshInspector();
    emit stateChanged();
}

void FlowEditorViewModel::readState() {
    state_.states.clear();
    state_.progress.clear();
    if (shownRun_) {
        if (const auto run = service_.store().run(flow().id, *shownRun_))
            for (const auto& [node, result] : run->results)
                state_.states.emplace(node, result);
        return;
    }
    const auto& runner = service_.runner();
    if (const auto live = runner.live().find(flow().id); live != runner.live().end())
        state_.states = live->second;
    if (const auto told = runner.progress().find(flow().id); told != runner.progress().end())
        state_.progress = told->second;
}

void FlowEditorViewModel::refresh() {
    state_.problems = readOnly_ ? std::vector<FlowProblem>() : service_.runner().problems(flow());
    if (state_.selected && !flow().node(*state_.selected) && !edgeOf(state_.selected)) {
        state_.selected.reset();
        emit selectionChanged();
    }
    refreshCanvas();
    refreshInspector();
    refreshLine();
    put(problems_, problemFacts(), &FlowEditorViewModel::problemsChanged);
    put(variables_, variableOptions(flow(), words()), &FlowEditorViewModel::variablesChanged);
    emit flowChanged();
}

void FlowEditorViewModel::refreshCanvas() {
    const FlowWords said = words();
    nodes_.setRows(document_ ? scene_.nodes(flow(), state_, said) : std::vector<FlowNodeRow>());
    edges_.setRows(document_ ? scene_.edges(flow(), state_, said) : std::vector<FlowEdgeRow>());
}

void FlowEditorViewModel::refreshInspector() {
    const FlowFieldSources sources{[&] {
                                       std::vector<std::string> names;
                                       for (const auto& script : automation_.scripts().scripts())
                                           names.push_back(script.name);
                                       return names;
                                   },
                                   volumesNow,
                                   [&] {
                                       return service_.store().flows();
                                   }};
    const FlowNode* node = selected();
    fields_.setRows(node ? fieldRows(*node, flow(), words(), sources) : std::vector<FlowFieldRow>());
    put(node_, nodeFacts(), &FlowEditorViewModel::nodeChanged);
    const bool edgeIsNew = edge_ != edgeFacts();
    edge_ = edgeFacts();
    const QVariantList links = linkFacts();
    if (edgeIsNew || links != links_) {
        links_ = links;
        emit linksChanged();
    }
}

QVariantMap FlowEditorViewModel::nodeFacts() const {
    const FlowNode* node = selected();
    if (!node)
        return {};
    const FlowWords said = words();
    const auto found = std::ranges::find(nodes_.rows(), node->id, &FlowNodeRow::id);
    QVariantMap facts{{QStringLiteral("title"), said.title(*node)},
                      {QStringLiteral("givenTitle"), qtText(printable(node->title))},
                      {QStringLiteral("ownTitle"), said.ownTitle(*node)},
                      {QStringLiteral("icon"), said.icon(*node)},
                      {QStringLiteral("isStart"), std::holds_alternative<StartNode>(node->kind)},
                      {QStringLiteral("detail"), found->detail},
                      {QStringLiteral("problemText"), found->problemText},
                      {QStringLiteral("planText"), found->planText},
                      {QStringLiteral("state"), found->state},
                      {QStringLiteral("stateText"), found->stateText}};
    if (const auto now = state_.states.find(node->id); now != state_.states.end())
        if (const auto* result = std::get_if<FlowNodeResult>(&now->second)) {
            facts[QStringLiteral("summary")] = qtText(printable(result->summary));
            facts[QStringLiteral("output")] = QString::fromStdString(result->output);
            facts[QStringLiteral("durationText")] = said.duration(result->seconds);
        }
    return facts;
}

QVariantList FlowEditorViewModel::linkFacts() const {
    const FlowNode* node = selected();
    if (!node)
        return {};
    const FlowWords said = words();
    QVariantList facts;
    for (const FlowEdge& edge : flow().outputs(node->id))
        if (const FlowNode* next = flow().node(edge.to))
            facts << QVariantMap{{QStringLiteral("edgeId"), qtText(edge.id.text())},
                                 {QStringLiteral("title"), said.title(*next)},
                                 {QStringLiteral("condition"), qtText(rawValue(edge.condition))}};
    return facts;
}

QVariantMap FlowEditorViewModel::edgeFacts() const {
    const FlowEdge* edge = edgeOf(state_.selected);
    const FlowNode* from = edge ? flow().node(edge->from) : nullptr;
    const FlowNode* to = edge ? flow().node(edge->to) : nullptr;
    if (!from || !to)
        return {};
    const FlowWords said = words();
    return {{QStringLiteral("edgeId"), qtText(edge->id.text())},
            {QStringLiteral("from"), said.title(*from)},
            {QStringLiteral("to"), said.title(*to)},
            {QStringLiteral("condition"), qtText(rawValue(edge->condition))}};
}

QVariantList FlowEditorViewModel::problemFacts() const {
    const FlowWords said = words();
    QVariantList facts;
    for (const FlowProblem& problem : state_.problems) {
        const FlowNode* node = problem.node ? flow().node(*problem.node) : nullptr;
        facts << QVariantMap{{QStringLiteral("node"), node ? qtText(node->id.text()) : QString()},
                             {QStringLiteral("title"), node ? said.title(*node) : QString()},
                             {QStringLiteral("text"), said.problem(problem)},
                             {QStringLiteral("blocks"), problem.blocks()}};
    }
    return facts;
}

bool FlowEditorViewModel::isBlocked() const {
    return std::ranges::any_of(state_.problems, &FlowProblem::blocks);
}

QVariantList FlowEditorViewModel::addOptions() const {
    return words().kindOptions(document_ && !flow().start());
}

QVariantList FlowEditorViewModel::conditionOptions() const {
    QVariantList options;
    for (const auto condition : allCases<FlowEdge::Condition>())
        options << option(qtText(rawValue(condition)), words().condition(condition));
    return options;
}

void FlowEditorViewModel::refreshRuns() {
    const FlowWords said = words();
    const DayTexts days(said.texts(), context_.calendar(), context_.now());
    const Date today = context_.calendar().startOfDay(context_.now());
    std::vector<FlowRunRow> rows;
    for (const FlowRun& run : service_.store().runs(flow().id)) {
        const FlowNodeOutcome outcome = run.outcome(flow());
        const double seconds = run.finishedAt ? Seconds(*run.finishedAt - run.startedAt).count() : 0;
        rows.push_back(
            {.id = run.id,
             .runId = qtText(run.id.text()),
             .outcome = qtText(rawValue(outcome)),
             .outcomeTitle = said.outcome(outcome),
             .timeText = run.startedAt >= today ? days.full(run.startedAt) : days.brief(run.startedAt),
             .triggerTitle = run.event ? qtText(printable(*run.event)) : said.trigger(run.trigger),
             .durationText = run.finishedAt ? said.duration(seconds) : QString(),
             .shown = run.id == shownRun_,
             .canResume = outcome == FlowNodeOutcome::failed || outcome == FlowNodeOutcome::cancelled});
    }
    runs_.setRows(std::move(rows));
    refreshLine();
}

void FlowEditorViewModel::refreshLine() {
    const FlowWords said = words();
    QString line = said.startLine(flow());
    if (const auto run = service_.store().lastRun(flow().id)) {
        const DayTexts days(said.texts(), context_.calendar(), context_.now());
        line = said.text(fmt::format("nodes-page.line.{}", rawValue(run->outcome(flow()))),
                         {{"start", line.toStdString()}, {"time", days.brief(run->startedAt).toStdString()}});
    }
    put(line_, line, &FlowEditorViewModel::lineChanged);
}

} // namespace vh::app
