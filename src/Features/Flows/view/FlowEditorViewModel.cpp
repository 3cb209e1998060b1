#include "Features/Flows/view/FlowEditorViewModel.h"

#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "Features/Flows/FlowFields.h"
#include "Features/Flows/NodesStore.h"
#include "Features/Flows/work/FlowsService.h"
#include "Features/Flows/work/NodesRunner.h"
#include "Platform/SystemError.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/Options.h"
#include "app/Session.h"

#include <algorithm>
#include <array>

namespace vh::app {

namespace {

using namespace flows;

/// Long enough for a word to be typed, short enough to be forgotten.
constexpr std::chrono::milliseconds saveDelay{800};
constexpr std::string_view inspectorKey = "nodes.inspector";

std::optional<Uuid> idOf(const QString& text) {
    return Uuid::parse(text.toStdString());
}

QString textOf(const std::optional<Uuid>& id) {
    return id ? qtText(id->text()) : QString();
}

} // namespace

FlowEditorViewModel::FlowEditorViewModel(AppContext& context, automation::Automation& automation)
    : context_(context), automation_(automation), service_(automation.service<automation::FlowsService>()),
      inspectorStanding_(
          qtText(context.session().defaults().get<std::string>(inspectorKey).value_or(std::string()))) {
    saving_.setSingleShot(true);
    saving_.setInterval(saveDelay);
    connect(&saving_, &QTimer::timeout, this, &FlowEditorViewModel::save);
    connect(&context_.texts(), &AppTexts::changed, this, &FlowEditorViewModel::retell);
    observingStore_ = service_.store().observe([this] { followStore(); });
    observingRunner_ = service_.runner().observe([this](const Uuid& flow) { followRunner(flow); });
}

FlowEditorViewModel::~FlowEditorViewModel() {
    close();
}

bool FlowEditorViewModel::open(const QString& flowId) {
    close();
    auto& store = service_.store();
    const auto id = idOf(flowId);
    const Flow* found = id ? store.anyFlow(*id) : nullptr;
    if (!found)
        return false;
    readOnly_ = store.isCompany(*id);
    document_.emplace(store, *found);
    state_ = {};
    shownRun_.reset();
    plan_.clear();
    say({});
    emit opened();
    readState();
    refresh();
    refreshRuns();
    emit planChanged();
    emit selectionChanged();
    emit stateChanged();
    emit connectChanged();
    return true;
}

void FlowEditorViewModel::close() {
    if (!document_)
        return;
    save();
    saving_.stop();
    document_.reset();
    scene_ = {};
    emit opened();
}

bool FlowEditorViewModel::save() {
    saving_.stop();
    if (!document_ || readOnly_)
        return true;
    const bool saved = attempt([this] { document_->save(); });
    emit flowChanged();
    return saved && document_->standing() == FlowDocument::Standing::saved;
}

void FlowEditorViewModel::keepMine() {
    attempt([this] { document_->keepMine(); });
    emit flowChanged();
}

void FlowEditorViewModel::takeTheirs() {
    document_->takeTheirs();
    refresh();
}

QString FlowEditorViewModel::flowId() const {
    return document_ ? qtText(flow().id.text()) : QString();
}

QString FlowEditorViewModel::name() const {
    return document_ ? qtText(printable(flow().name)) : QString();
}

QRectF FlowEditorViewModel::bounds() const {
    return document_ ? boundsOf(flow()) : QRectF();
}

bool FlowEditorViewModel::isBlank() const {
    return document_ && !readOnly_ && flow().nodes.size() == 2 && flow().edges.size() == 1 && !canUndo();
}

void FlowEditorViewModel::setInspectorStanding(const QString& standing) {
    if (standing == inspectorStanding_)
        return;
    inspectorStanding_ = standing;
    try {
        context_.session().defaults().set(inspectorKey, standing.toStdString());
    } catch (const SystemError&) {
        // It stands as wanted all the same, and is only not remembered.
    }
    emit inspectorStandingChanged();
}

QString FlowEditorViewModel::trouble() const {
    if (!document_ || readOnly_)
        return {};
    switch (document_->standing()) {
    case FlowDocument::Standing::conflict:
        return QStringLiteral("conflict");
    case FlowDocument::Standing::gone:
        return QStringLiteral("gone");
    default:
        return {};
    }
}

// ---- selection

const FlowNode* FlowEditorViewModel::selected() const {
    return document_ && state_.selected ? flow().node(*state_.selected) : nullptr;
}

const FlowEdge* FlowEditorViewModel::edgeOf(const std::optional<Uuid>& id) const {
    if (!document_ || !id)
        return nullptr;
    const auto found = std::ranges::find(flow().edges, *id, &FlowEdge::id);
    return found == flow().edges.end() ? nullptr : &*found;
}

QString FlowEditorViewModel::selectedNode() const {
    return selected() ? textOf(state_.selected) : QString();
}

QString FlowEditorViewModel::selectedEdge() const {
    return edgeOf(state_.selected) ? textOf(state_.selected) : QString();
}

void FlowEditorViewModel::select(const QString& id) {
    selectId(idOf(id));
}

void FlowEditorViewModel::selectId(std::optional<Uuid> id) {
    if (!document_ || (id && !flow().node(*id) && !edgeOf(id)))
        id.reset();
    if (id == state_.selected)
        return;
    state_.selected = id;
    if (document_)
        document_->endStep();
    refreshCanvas();
    refreshInspector();
    emit selectionChanged();
}

void FlowEditorViewModel::step(const QString& direction) {
    if (!document_ || flow().nodes.empty())
        return;
    if (state_.connectFrom) {
        const Uuid from = state_.aimedAt.value_or(*state_.connectFrom);
        if (const auto next = neighbour(flow(), from, direction))
            aim(textOf(next));
        return;
    }
    if (const FlowEdge* edge = edgeOf(state_.selected)) {
        const bool back = direction == QLatin1String("left") || direction == QLatin1String("up");
        selectId(back ? edge->from : edge->to);
    } else if (!state_.selected) {
        selectId(flow().nodes.front().id);
    } else if (const auto next = neighbour(flow(), *state_.selected, direction)) {
        selectId(next);
    }
}

void FlowEditorViewModel::stepEdge() {
    if (!document_ || !state_.selected)
        return;
    const FlowEdge* current = edgeOf(state_.selected);
    const Uuid node = current ? current->from : *state_.selected;
    auto edges = flow().outputs(node);
    if (edges.empty())
        edges = flow().inputs(node);
    if (edges.empty())
        return;
    const auto at = std::ranges::find(edges, *state_.selected, &FlowEdge::id);
    const bool isLast = at == edges.end() || at + 1 == edges.end();
    selectId(isLast ? edges.front().id : (at + 1)->id);
}

QString FlowEditorViewModel::nodeAt(double x, double y) const {
    return document_ ? textOf(app::nodeAt(flow(), {x, y})) : QString();
}

QString FlowEditorViewModel::edgeAt(double x, double y, double reach) const {
    return document_ ? textOf(app::edgeAt(flow(), {x, y}, reach)) : QString();
}

// ---- changes

template <class Change>
bool FlowEditorViewModel::edit(const std::string& step, Change change) {
    if (!document_ || readOnly_ || !document_->edit(step, change))
        return false;
    settle();
    return true;
}

/// After every change: it is stored soon, and what a run would do is no longer known.
void FlowEditorViewModel::settle() {
    saving_.start();
    put(plan_, {}, &FlowEditorViewModel::planChanged);
    state_.plan.clear();
    refresh();
}

void FlowEditorViewModel::rename(const QString& name) {
    // As it is typed: a space at the end is on the way to the next word.
    if (!name.trimmed().isEmpty())
        edit("name", [&](Flow& flow) { flow.name = name.toStdString(); });
}

void FlowEditorViewModel::setTitle(const QString& title) {
    if (const FlowNode* node = selected())
        edit("title", [&, id = node->id](Flow& flow) {
            flow.node(id)->title = title.trimmed().isEmpty() ? std::string() : title.toStdString();
        });
}

void FlowEditorViewModel::setField(const QString& key, const QString& value) {
    if (const FlowNode* node = selected())
        edit("field " + key.toStdString(), [&, id = node->id](Flow& flow) {
            // A value that the field cannot hold leaves the node as it is, and the view shows it again.
            if (!flows::setField(*flow.node(id), key.toStdString(), value.toStdString()))
                refreshInspector();
        });
}

void FlowEditorViewModel::setCondition(const QString& edgeId, const QString& condition) {
    const auto wanted = fromRaw<FlowEdge::Condition>(condition.toStdString());
    const auto id = idOf(edgeId);
    if (wanted && edgeOf(id))
        edit({}, [&](Flow& flow) { std::ranges::find(flow.edges, *id, &FlowEdge::id)->condition = *wanted; });
}

void FlowEditorViewModel::turnCondition(const QString& edgeId) {
    const FlowEdge* edge = edgeOf(idOf(edgeId));
    if (!edge)
        return;
    constexpr auto all = allCases<FlowEdge::Condition>();
    const auto at = static_cast<size_t>(std::ranges::find(all, edge->condition) - all.begin());
    setCondition(edgeId, qtText(rawValue(all[(at + 1) % all.size()])));
}

void FlowEditorViewModel::moveTo(const QString& nodeId, double x, double y) {
    const auto id = idOf(nodeId);
    if (document_ && id && flow().node(*id))
        edit("move " + id->text(), [&](Flow& flow) { flow.node(*id)->position = canvas::snapped(x, y); });
}

void FlowEditorViewModel::nudge(int right, int down) {
    if (const FlowNode* node = selected())
        moveTo(textOf(node->id), node->position.x + right * canvas::grid,
               node->position.y + down * canvas::grid);
}

void FlowEditorViewModel::endStep() {
    if (document_)
        document_->endStep();
}

void FlowEditorViewModel::addAt(const QString& kind, double x, double y) {
    const auto found = std::ranges::find(emptyKinds(), kind.toStdString(),
                                         [](const FlowNodeKind& each) { return caseName(each); });
    if (document_ && found != emptyKinds().end())
        add(*found, {x, y}, std::nullopt);
}

void FlowEditorViewModel::addNext(const QString& kind) {
    const auto found = std::ranges::find(emptyKinds(), kind.toStdString(),
                                         [](const FlowNodeKind& each) { return caseName(each); });
    if (!document_ || found == emptyKinds().end())
        return;
    constexpr double gap = 3 * canvas::grid;
    if (const FlowNode* node = selected()) {
        add(*found, {node->position.x + canvas::nodeWidth + gap, node->position.y}, node->id);
    } else {
        const QRectF bounds = boundsOf(flow());
        add(*found, {bounds.isEmpty() ? gap : bounds.right() + gap, bounds.top()}, std::nullopt);
    }
}

void FlowEditorViewModel::add(FlowNodeKind kind, FlowPoint at, const std::optional<Uuid>& after) {
    if (std::holds_alternative<StartNode>(kind) && flow().start())
        return;
    const Uuid id = Uuid::random();
    edit({}, [&](Flow& flow) {
        flow.nodes.push_back({.id = id, .kind = std::move(kind), .position = freePlace(flow, at)});
        if (after)
            flow.connect(*after, id, FlowEdge::Condition::always);
    });
    selectId(id);
}

void FlowEditorViewModel::duplicateSelected() {
    const FlowNode* node = selected();
    if (!node || std::holds_alternative<StartNode>(node->kind))
        return;
    FlowNode copy = *node;
    copy.id = Uuid::random();
    edit({}, [&](Flow& flow) {
        copy.position =
            freePlace(flow, {copy.position.x, copy.position.y + canvas::nodeHeight + canvas::grid});
        flow.nodes.push_back(copy);
    });
    selectId(copy.id);
}

void FlowEditorViewModel::removeSelected() {
    if (!state_.selected)
        return;
    const Uuid gone = *state_.selected;
    const auto next = selected() ? neighbour(flow(), gone, QStringLiteral("left")) : std::nullopt;
    if (edit({}, [&](Flow& flow) { flow.remove({gone}); }))
        selectId(next);
}

void FlowEditorViewModel::removeEdge(const QString& edgeId) {
    if (const auto id = idOf(edgeId); edgeOf(id))
        edit({}, [&](Flow& flow) { flow.remove({*id}); });
}

void FlowEditorViewModel::undo() {
    if (!canUndo() || readOnly_)
        return;
    document_->undo();
    settle();
}

void FlowEditorViewModel::redo() {
    if (!canRedo() || readOnly_)
        return;
    document_->redo();
    settle();
}

// ---- drawing an edge

QString FlowEditorViewModel::connectFrom() const {
    return textOf(state_.connectFrom);
}

QString FlowEditorViewModel::aimedAt() const {
    return textOf(state_.aimedAt);
}

void FlowEditorViewModel::beginConnect(const QString& nodeId) {
    const auto id = idOf(nodeId);
    if (readOnly_ || !document_ || !id || !flow().node(*id))
        return;
    state_.connectFrom = id;
    state_.aimedAt.reset();
    refreshCanvas();
    emit connectChanged();
}

void FlowEditorViewModel::aim(const QString& nodeId) {
    const auto id = idOf(nodeId);
    if (!state_.connectFrom || id == state_.aimedAt)
        return;
    state_.aimedAt = id == state_.connectFrom ? std::nullopt : id;
    refreshCanvas();
    emit connectChanged();
}

bool FlowEditorViewModel::finishConnect() {
    const auto from = std::exchange(state_.connectFrom, std::nullopt);
    const auto to = std::exchange(state_.aimedAt, std::nullopt);
    std::optional<FlowEdge> made;
    if (from && to)
        edit({}, [&](Flow& flow) { made = flow.connect(*from, *to, FlowEdge::Condition::always); });
    refreshCanvas();
    emit connectChanged();
    if (made)
        selectId(made->id);
    return made.has_value();
}

void FlowEditorViewModel::cancelConnect() {
    state_.connectFrom.reset();
    state_.aimedAt.reset();
    refreshCanvas();
    emit connectChanged();
}

QString FlowEditorViewModel::connectFault() const {
    if (!document_ || !state_.connectFrom || !state_.aimedAt ||
        flow().canConnect(*state_.connectFrom, *state_.aimedAt))
        return {};
    const FlowNode* to = flow().node(*state_.aimedAt);
    if (to && std::holds_alternative<StartNode>(to->kind))
        return context_.texts().text("nodes-page.connect.start");
    if (to && flow().reaches(to->id, *state_.connectFrom))
        return context_.texts().text("nodes-page.connect.circle");
    return context_.texts().text("nodes-page.connect.twice");
}

bool FlowEditorViewModel::attempt(const std::function<void()>& act) {
    try {
        say({});
        act();
        return true;
    } catch (const std::exception& error) {
        say(context_.texts().errorText(error));
        return false;
    }
}

void FlowEditorViewModel::say(const QString& message) {
    put(message_, message, &FlowEditorViewModel::messageChanged);
}

} // namespace vh::app
