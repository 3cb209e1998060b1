#pragma once

#include "Features/Flows/FlowExecutor.h"
#include "Features/Flows/FlowRun.h"

#include <functional>

namespace vh::flows {

/// Whether a node that ended so lets the edge's target go.
bool isSatisfied(FlowEdge::Condition condition, FlowNodeOutcome outcome);

/// Runs a flow: each node as soon as all before it have ended and one of its edges lets it go. It has no time-out.
class FlowEngine {
public:
    /// Called at each change, on the thread of run.
    using Update = std::function<void(const Uuid& node, const FlowNodeState& state)>;

    /// Blocks until every node has a result. Nodes with a result in `kept` are not run again, and no update tells of
    /// them. `flow` is what the caller checked: one start, no cycle.
    static FlowResults run(const Flow& flow, FlowExecutor& executor, const Update& update,
                           const CancelToken& cancel = {}, const FlowResults& kept = {});
};

} // namespace vh::flows
