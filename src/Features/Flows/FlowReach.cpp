#include "Features/Flows/FlowReach.h"

namespace vh::flows {

FlowReach::FlowReach(const Flow& flow)
    : flow_(flow), graph_(flow), computers_(graph_.computersBefore()), hasTurn_(flow.nodes.size()),
      isReached_(flow.nodes.size()) {}

const FlowNode* FlowReach::node(const Uuid& id) const {
    const size_t place = graph_.placeOf(id);
    return place == FlowGraph::nowhere ? nullptr : &flow_.nodes[place];
}

void FlowReach::follow(size_t start) {
    isReached_[start] = true;
    for (const size_t node : graph_.order()) {
        hasTurn_[node] = true;
        if (isReached_[node])
            for (const size_t after : graph_.nodes()[node].outputs)
                isReached_[after] = true;
    }
}

} // namespace vh::flows
