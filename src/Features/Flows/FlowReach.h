#pragma once

#include "Features/Flows/FlowGraph.h"

#include <vector>

namespace vh::flows {

/// What a check asks of a flow again and again, found out in one go over its nodes and edges. Nodes are named by their
/// place in the flow, which must not change meanwhile.
class FlowReach {
public:
    explicit FlowReach(const Flow& flow);

    /// The first of that identifier.
    const FlowNode* node(const Uuid& id) const;

    /// Goes through the flow as a run from `start` would.
    void follow(size_t start);
    /// Whether a run comes to it: a node that is after itself or after something that is missing never has its turn, and
    /// nothing leads to one that is named like one before it.
    bool isReached(size_t node) const { return isReached_[node] && hasTurn_[node]; }
    /// Those before it.
    FlowGraph::Computers computers(size_t node) const { return computers_[node]; }

private:
    const Flow& flow_;
    const FlowGraph graph_;
    const std::vector<FlowGraph::Computers> computers_;
    std::vector<bool> hasTurn_;
    std::vector<bool> isReached_;
};

} // namespace vh::flows
