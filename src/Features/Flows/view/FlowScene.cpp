#include "Features/Flows/view/FlowScene.h"

#include "Core/Printable.h"
#include "Features/Flows/FlowEngine.h"
#include "app/AppTexts.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace vh::app {

namespace {

using namespace flows;

template <class Map>
auto find(const Map& map, const Uuid& id) -> const typename Map::mapped_type* {
    const auto found = map.find(id);
    return found == map.end() ? nullptr : &found->second;
}

std::unordered_map<Uuid, const FlowNode*> byId(const Flow& flow) {
    std::unordered_map<Uuid, const FlowNode*> nodes;
    for (const FlowNode& node : flow.nodes)
        nodes.emplace(node.id, &node);
    return nodes;
}

std::unordered_map<Uuid, QStringList> problemTexts(const std::vector<FlowProblem>& problems,
                                                   const FlowWords& words) {
    std::unordered_map<Uuid, QStringList> texts;
    for (const FlowProblem& problem : problems)
        if (problem.node)
            texts[*problem.node] << words.problem(problem);
    return texts;
}

QString aimOf(const Flow& flow, const FlowSceneState& state, const Uuid& node) {
    if (!state.connectFrom)
        return {};
    if (node == state.connectFrom)
        return QStringLiteral("from");
    if (node != state.aimedAt)
        return {};
    return flow.canConnect(*state.connectFrom, node) ? QStringLiteral("good") : QStringLiteral("bad");
}

QString stateText(const FlowNodeState* state, const std::string* progress, const FlowWords& words) {
    if (!state)
        return {};
    if (const auto* result = std::get_if<FlowNodeResult>(state))
        return words.outcome(result->outcome);
    return progress && !progress->empty() ? qtText(printable(*progress)) : words.text("nodes-page.running");
}

QString joined(QStringList parts) {
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

} // namespace

QString FlowScene::stateName(const FlowNodeState* state) {
    if (!state)
        return {};
    const auto* result = std::get_if<FlowNodeResult>(state);
    return result ? qtText(rawValue(result->outcome)) : QStringLiteral("running");
}

const FlowScene::Said& FlowScene::said(const FlowNode& node, const FlowWords& words) {
    Said& said = said_[node.id];
    if (said.title.isEmpty() || said.node.kind != node.kind || said.node.title != node.title)
        said = {node, words.title(node), words.detail(node), words.icon(node)};
    return said;
}

std::vector<FlowNodeRow> FlowScene::nodes(const Flow& flow, const FlowSceneState& state,
                                          const FlowWords& words) {
    const auto problems = problemTexts(state.problems, words);
    std::vector<FlowNodeRow> rows;
    rows.reserve(flow.nodes.size());
    for (const FlowNode& node : flow.nodes) {
        const Said& said = this->said(node, words);
        const FlowNodeState* now = find(state.states, node.id);
        const QStringList* wrong = find(problems, node.id);
        const std::string* plan = find(state.plan, node.id);
        FlowNodeRow row{.id = node.id,
                        .nodeId = qtText(node.id.text()),
                        .nodeX = node.position.x,
                        .nodeY = node.position.y,
                        .kind = qtText(caseName(node.kind)),
                        .title = said.title,
                        .detail = said.detail,
                        .icon = said.icon,
                        .state = stateName(now),
                        .stateText = stateText(now, find(state.progress, node.id), words),
                        .problemText = wrong ? wrong->join(u'\n') : QString(),
                        .planText = plan ? qtText(printable(*plan)) : QString(),
                        .aim = aimOf(flow, state, node.id),
                        .selected = node.id == state.selected};
        row.spoken = joined({row.title, row.detail, row.stateText, row.problemText, row.planText});
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<FlowEdgeRow> FlowScene::edges(const Flow& flow, const FlowSceneState& state,
                                          const FlowWords& words) {
    const auto nodes = byId(flow);
    std::vector<FlowEdgeRow> rows;
    rows.reserve(flow.edges.size());
    for (const FlowEdge& edge : flow.edges) {
        const auto from = nodes.find(edge.from);
        const auto to = nodes.find(edge.to);
        if (from == nodes.end() || to == nodes.end())
            continue;
        const FlowNodeState* before = find(state.states, edge.from);
        const auto* result = before ? std::get_if<FlowNodeResult>(before) : nullptr;
        FlowEdgeRow row{.id = edge.id,
                        .edgeId = qtText(edge.id.text()),
                        .curve = FlowCurve::between(from->second->position, to->second->position),
                        .condition = qtText(rawValue(edge.condition)),
                        .conditionTitle = words.condition(edge.condition),
                        .selected = edge.id == state.selected,
                        .near = edge.from == state.selected || edge.to == state.selected,
                        .dim = result && !isSatisfied(edge.condition, result->outcome)};
        row.spoken =
            words.text("nodes-page.edge.spoken", {{"from", said(*from->second, words).title.toStdString()},
                                                  {"to", said(*to->second, words).title.toStdString()},
                                                  {"condition", row.conditionTitle.toStdString()}});
        rows.push_back(std::move(row));
    }
    return rows;
}

std::optional<Uuid> neighbour(const Flow& flow, const Uuid& node, const QString& direction) {
    constexpr double connected = 1e6; // before all that are only near
    const FlowNode* here = flow.node(node);
    if (!here)
        return std::nullopt;
    const bool sideways = direction == QLatin1String("left") || direction == QLatin1String("right");
    const double sign = direction == QLatin1String("right") || direction == QLatin1String("down") ? 1 : -1;
    std::unordered_set<Uuid> joined;
    for (const FlowEdge& edge : flow.edges) {
        if (edge.from == node && sign > 0)
            joined.insert(edge.to);
        if (edge.to == node && sign < 0)
            joined.insert(edge.from);
    }

    std::optional<Uuid> best;
    double least = std::numeric_limits<double>::max();
    for (const FlowNode& each : flow.nodes) {
        const double dx = each.position.x - here->position.x;
        const double dy = each.position.y - here->position.y;
        const double along = sign * (sideways ? dx : dy);
        const double across = std::abs(sideways ? dy : dx);
        if (each.id == node || along <= 0 || across > 3 * along)
            continue;
        const double cost = along + 2 * across - (joined.contains(each.id) ? connected : 0);
        if (cost < least) {
            least = cost;
            best = each.id;
        }
    }
    return best;
}

std::optional<Uuid> nodeAt(const Flow& flow, QPointF point) {
    const auto found = std::find_if(flow.nodes.rbegin(), flow.nodes.rend(), [&](const FlowNode& node) {
        return canvas::frame(node.position).contains(point);
    });
    return found == flow.nodes.rend() ? std::nullopt : std::optional(found->id);
}

std::optional<Uuid> edgeAt(const Flow& flow, QPointF point, double reach) {
    const auto nodes = byId(flow);
    std::optional<Uuid> best;
    for (const FlowEdge& edge : flow.edges) {
        const auto from = nodes.find(edge.from);
        const auto to = nodes.find(edge.to);
        if (from == nodes.end() || to == nodes.end())
            continue;
        const double away = FlowCurve::between(from->second->position, to->second->position).distance(point);
        if (away <= reach) {
            reach = away;
            best = edge.id;
        }
    }
    return best;
}

FlowPoint freePlace(const Flow& flow, FlowPoint wanted) {
    const auto isTaken = [&](const FlowPoint& at) {
        const QRectF room = canvas::frame(at).adjusted(-canvas::grid / 2, -canvas::grid / 2, canvas::grid / 2,
                                                       canvas::grid / 2);
        return std::ranges::any_of(
            flow.nodes, [&](const FlowNode& node) { return room.intersects(canvas::frame(node.position)); });
    };
    wanted = canvas::snapped(wanted.x, wanted.y);
    while (isTaken(wanted))
        wanted.y += canvas::grid;
    return wanted;
}

QRectF boundsOf(const Flow& flow) {
    QRectF bounds;
    for (const FlowNode& node : flow.nodes)
        bounds |= canvas::frame(node.position);
    return bounds;
}

} // namespace vh::app
