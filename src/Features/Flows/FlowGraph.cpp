#include "Features/Flows/FlowGraph.h"

#include <algorithm>
#include <functional>
#include <queue>

namespace vh::flows {

namespace {

void add(FlowGraph::Computers& to, const FlowComputer* computer) {
    if (!to.only)
        to.only = computer;
    else if (to.only != computer && *to.only != *computer)
        to.areSeveral = true;
}

} // namespace

FlowGraph::FlowGraph(const Flow& flow) : flow_(flow), nodes_(flow.nodes.size()) {
    places_.reserve(flow.nodes.size());
    for (size_t i = 0; i < flow.nodes.size(); ++i)
        places_.emplace(flow.nodes[i].id, i);
    for (const FlowEdge& edge : flow.edges) {
        const size_t to = placeOf(edge.to);
        if (to == nowhere)
            continue;
        const size_t from = placeOf(edge.from);
        nodes_[to].inputs.push_back({from, edge.condition});
        if (from != nowhere)
            nodes_[from].outputs.push_back(to);
    }
}

size_t FlowGraph::placeOf(const Uuid& id) const {
    const auto found = places_.find(id);
    return found == places_.end() ? nowhere : found->second;
}

std::vector<size_t> FlowGraph::ancestors(size_t node) const {
    std::vector<bool> seen(nodes_.size());
    std::vector<size_t> found;
    std::vector<size_t> open{node};
    while (!open.empty()) {
        const size_t at = open.back();
        open.pop_back();
        for (const Input& input : nodes_[at].inputs)
            if (input.from != nowhere && !seen[input.from]) {
                seen[input.from] = true;
                found.push_back(input.from);
                open.push_back(input.from);
            }
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<size_t> FlowGraph::order() const {
    std::vector<size_t> missing(nodes_.size());
    std::priority_queue<size_t, std::vector<size_t>, std::greater<>> ready;
    for (size_t i = 0; i < nodes_.size(); ++i) {
        missing[i] = nodes_[i].inputs.size();
        if (missing[i] == 0)
            ready.push(i);
    }
    std::vector<size_t> order;
    while (!ready.empty()) {
        order.push_back(ready.top());
        ready.pop();
        for (const size_t to : nodes_[order.back()].outputs)
            if (--missing[to] == 0)
                ready.push(to);
    }
    return order;
}

std::vector<FlowGraph::Computers> FlowGraph::computersBefore() const {
    std::vector<Computers> before(nodes_.size());
    for (const size_t at : order())
        for (const Input& input : nodes_[at].inputs) {
            if (const auto* computer = std::get_if<ComputerNode>(&flow_.nodes[input.from].kind))
                add(before[at], &computer->computer);
            if (before[input.from].only)
                add(before[at], before[input.from].only);
            before[at].areSeveral |= before[input.from].areSeveral;
        }
    return before;
}

std::vector<FlowComputer> FlowGraph::computers() const {
    const std::vector<Computers> before = computersBefore();
    std::vector<FlowComputer> computers(nodes_.size(), ThisMac{});
    for (size_t i = 0; i < nodes_.size(); ++i) {
        if (const auto* own = std::get_if<ComputerNode>(&flow_.nodes[i].kind))
            computers[i] = own->computer;
        else if (before[i].only && !before[i].areSeveral)
            computers[i] = *before[i].only;
    }
    return computers;
}

} // namespace vh::flows
