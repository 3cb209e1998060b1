#pragma once

#include "Features/Flows/Flow.h"
#include "Features/Flows/FlowRun.h"
#include "Platform/CancelToken.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vh::flows {

/// A node whose turn has come. Valid until its result was given. What went before is gathered when it is asked for,
/// on any thread: in a long chain it is everything.
struct FlowStep {
    const Flow& flow;
    const FlowNode& node;
    FlowComputer computer;
    /// Results of the nodes right before it, in the order of the edges.
    std::function<std::vector<FlowInput>()> inputs;
    /// Results of all nodes before it, in the order of the flow.
    std::function<std::vector<FlowInput>()> before;
};

/// What does a node's work; the engine knows nothing of it.
class FlowExecutor {
public:
    using Done = std::function<void(FlowNodeResult)>;
    virtual ~FlowExecutor() = default;

    /// Begins the work and returns soon. `done` must be called once, on any thread, also when cancelled; it may be
    /// called before this returns. Failures are results; it throws nothing. Called on the engine's thread.
    virtual void run(const FlowStep& step, const CancelToken& cancel, Done done) = 0;

    /// The line in which the node waits for its turn; nothing when it needs none.
    virtual std::optional<std::string> lane(const FlowNode&, const FlowComputer&) const {
        return std::nullopt;
    }
};

} // namespace vh::flows
