#include "Features/Flows/FlowReach.h"

namespace vh::flows {

namespace {

void add(FlowReach::Computers& to, const FlowComputer* computer) {
    if (!to.only)
        to.only = computer;
    else if (to.only != computer && *to.only != *computer)
        to.areSeveral = true;
}

} // namespace

FlowReach::FlowReach(const Flow& flow)
    : flow_(flow), next_(flow.nodes.size()), waitsFor_(flow.nodes.size()), isReached_(flow.nodes.size()),
      computers_(flow.nodes.size()) {
    index_.reserve(flow.nodes.size());
    for (size_t i = 0; i < flow.nodes.size(); ++i)
        if (!index_.emplace(flow.nodes[i].id, i).second)
            waitsFor_[i] = 1; // nothing leads to a second node of one name
    for (const FlowEdge& edge : flow.edges) {
        const auto to = index_.find(edge.to);
        if (to == index_.end())
            continue;
        ++waitsFor_[to->second];
        if (const auto from = index_.find(edge.from); from != index_.end())
            next_[from->second].push_back(to->second);
    }
}

const FlowNode* FlowReach::node(const Uuid& id) const {
    const auto found = index_.find(id);
    return found == index_.end() ? nullptr : &flow_.nodes[found->second];
}

void FlowReach::follow(size_t start) {
    std::vector<size_t> ready;
    for (size_t i = 0; i < waitsFor_.size(); ++i)
        if (waitsFor_[i] == 0)
            ready.push_back(i);
    isReached_[start] = true;
    for (size_t at = 0; at < ready.size(); ++at) {
        const size_t node = ready[at];
        settle(node);
        for (const size_t after : next_[node])
            if (--waitsFor_[after] == 0)
                ready.push_back(after);
    }
}

/// Hands on what is known of a node that has all its inputs.
void FlowReach::settle(size_t node) {
    const auto* own = std::get_if<ComputerNode>(&flow_.nodes[node].kind);
    for (const size_t after : next_[node]) {
        if (isReached_[node])
            isReached_[after] = true;
        Computers& computers = computers_[after];
        if (own)
            add(computers, &own->computer);
        if (computers_[node].only)
            add(computers, computers_[node].only);
        computers.areSeveral |= computers_[node].areSeveral;
    }
}

} // namespace vh::flows
