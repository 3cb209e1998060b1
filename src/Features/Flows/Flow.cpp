#include "Features/Flows/Flow.h"

#include "Core/MailAddress.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>

namespace vh::flows {

namespace {

/// Calls `visit` for every node before (or after) `start` once, nearest first. It keeps its own list of what is to be
/// seen: a chain may be longer than the stack is deep.
template <class Visit>
void walk(const std::vector<FlowEdge>& edges, const Uuid& start, Uuid FlowEdge::*from, Uuid FlowEdge::*to,
          Visit visit) {
    std::unordered_map<Uuid, std::vector<Uuid>> next;
    for (const FlowEdge& edge : edges)
        next[edge.*from].push_back(edge.*to);
    std::unordered_set<Uuid> seen{start};
    std::vector<Uuid> queue{start};
    for (size_t i = 0; i < queue.size(); ++i) {
        const auto found = next.find(queue[i]);
        if (found == next.end())
            continue;
        for (const Uuid& each : found->second)
            if (seen.insert(each).second) {
                queue.push_back(each);
                visit(each);
            }
    }
}

std::vector<FlowEdge> edgesWhere(const std::vector<FlowEdge>& edges, Uuid FlowEdge::*end, const Uuid& id) {
    std::vector<FlowEdge> found;
    std::ranges::copy_if(edges, std::back_inserter(found), [&](const auto& edge) { return edge.*end == id; });
    return found;
}

} // namespace

std::vector<std::string> FlowEmail::invalidRecipients() const {
    std::vector<std::string> invalid;
    std::ranges::remove_copy_if(recipients, std::back_inserter(invalid), MailAddress::isValid);
    return invalid;
}

Flow Flow::blank(std::string name, Date now) {
    Flow flow{.id = Uuid::random(), .name = std::move(name), .updatedAt = now};
    flow.nodes.push_back({Uuid::random(), StartNode{}, {120, 200}, ""});
    flow.nodes.push_back({Uuid::random(), ComputerNode{}, {380, 200}, ""});
    flow.edges.push_back({Uuid::random(), flow.nodes[0].id, flow.nodes[1].id, FlowEdge::Condition::always});
    return flow;
}

const FlowNode* Flow::node(const Uuid& nodeID) const {
    const auto found = std::ranges::find(nodes, nodeID, &FlowNode::id);
    return found == nodes.end() ? nullptr : &*found;
}

FlowNode* Flow::node(const Uuid& nodeID) {
    return const_cast<FlowNode*>(std::as_const(*this).node(nodeID));
}

const FlowTrigger* Flow::start() const {
    for (const FlowNode& each : nodes)
        if (const auto* start = std::get_if<StartNode>(&each.kind))
            return &start->trigger;
    return nullptr;
}

std::vector<FlowEdge> Flow::inputs(const Uuid& nodeID) const {
    return edgesWhere(edges, &FlowEdge::to, nodeID);
}

std::vector<FlowEdge> Flow::outputs(const Uuid& nodeID) const {
    return edgesWhere(edges, &FlowEdge::from, nodeID);
}

std::set<Uuid> Flow::ancestors(const Uuid& nodeID) const {
    std::set<Uuid> found;
    walk(edges, nodeID, &FlowEdge::to, &FlowEdge::from, [&](const Uuid& each) { found.insert(each); });
    return found;
}

bool Flow::reaches(const Uuid& from, const Uuid& to) const {
    bool isReached = from == to;
    if (!isReached)
        walk(edges, from, &FlowEdge::from, &FlowEdge::to, [&](const Uuid& each) { isReached |= each == to; });
    return isReached;
}

std::vector<FlowComputer> Flow::computers(const Uuid& nodeID) const {
    std::unordered_map<Uuid, const FlowComputer*> known;
    for (const FlowNode& each : nodes)
        if (const auto* computer = std::get_if<ComputerNode>(&each.kind))
            known.emplace(each.id, &computer->computer);
    if (const auto own = known.find(nodeID); own != known.end())
        return {*own->second};
    std::vector<FlowComputer> found;
    walk(edges, nodeID, &FlowEdge::to, &FlowEdge::from, [&](const Uuid& each) {
        const auto computer = known.find(each);
        if (computer != known.end() && std::ranges::find(found, *computer->second) == found.end())
            found.push_back(*computer->second);
    });
    return found;
}

FlowComputer Flow::computer(const Uuid& nodeID) const {
    auto found = computers(nodeID);
    return found.size() == 1 ? std::move(found[0]) : ThisMac{};
}

bool Flow::canConnect(const Uuid& from, const Uuid& to) const {
    const FlowNode* target = node(to);
    if (!node(from) || !target || std::holds_alternative<StartNode>(target->kind))
        return false;
    const bool isThere =
        std::ranges::any_of(edges, [&](const FlowEdge& edge) { return edge.from == from && edge.to == to; });
    return !isThere && !reaches(to, from); // a node reaches itself
}

std::optional<FlowEdge> Flow::connect(const Uuid& from, const Uuid& to, FlowEdge::Condition when) {
    if (!canConnect(from, to))
        return std::nullopt;
    edges.push_back({Uuid::random(), from, to, when});
    return edges.back();
}

void Flow::remove(const std::set<Uuid>& ids) {
    std::erase_if(nodes, [&](const FlowNode& each) { return ids.contains(each.id); });
    std::erase_if(edges, [&](const FlowEdge& edge) {
        return ids.contains(edge.id) || ids.contains(edge.from) || ids.contains(edge.to);
    });
}

Flow Flow::renewed() const {
    Flow copy = *this;
    std::map<Uuid, Uuid> fresh;
    const auto renew = [&](Uuid& each) {
        each = fresh.try_emplace(each, Uuid::random()).first->second;
    };
    copy.id = Uuid::random();
    for (FlowNode& each : copy.nodes)
        renew(each.id);
    for (FlowEdge& edge : copy.edges) {
        edge.id = Uuid::random();
        renew(edge.from);
        renew(edge.to);
    }
    for (FlowNode& each : copy.nodes)
        if (auto* sync = std::get_if<SyncNode>(&each.kind); sync && sync->destinationNode)
            renew(*sync->destinationNode);
    return copy;
}

} // namespace vh::flows
