#pragma once

#include "Features/Flows/Flow.h"

#include <limits>
#include <unordered_map>
#include <vector>

namespace vh::flows {

/// The edges of a flow by places in its list of nodes, made once in linear time. The flow, which may be anything that a
/// file can hold, must outlive it and stay as it is.
class FlowGraph {
public:
    static constexpr size_t nowhere = std::numeric_limits<size_t>::max();

    struct Input {
        size_t from = nowhere; ///< `nowhere` for an edge from a node that is not there
        FlowEdge::Condition condition = FlowEdge::Condition::always;
    };
    struct Node {
        std::vector<Input> inputs;   ///< in the order of the edges
        std::vector<size_t> outputs; ///< one an edge
    };

    explicit FlowGraph(const Flow& flow);

    const std::vector<Node>& nodes() const { return nodes_; }
    /// Of the first of that identifier; `nowhere` when there is none.
    size_t placeOf(const Uuid& id) const;
    /// Every node before this one, in the order of the list.
    std::vector<size_t> ancestors(size_t node) const;
    /// Every node after all that lead to it, otherwise in the order of the list; without those of a cycle.
    std::vector<size_t> order() const;
    struct Computers {
        const FlowComputer* only = nullptr;
        bool areSeveral = false;
    };
    /// For each node those before it; none for those of a cycle.
    std::vector<Computers> computersBefore() const;
    /// For each node what Flow::computer gives.
    std::vector<FlowComputer> computers() const;

private:
    const Flow& flow_;
    std::unordered_map<Uuid, size_t> places_;
    std::vector<Node> nodes_;
};

} // namespace vh::flows
