#include "Features/Flows/FlowRun.h"

#include "Features/Flows/Flow.h"

#include <unordered_map>

namespace vh::flows {

FlowNodeOutcome FlowRun::outcome(const Flow& flow) const {
    std::set<Uuid> planned; // nodes whose failure something was drawn for
    for (const FlowEdge& edge : flow.edges)
        if (edge.condition == FlowEdge::Condition::failure)
            planned.insert(edge.from);
    auto outcome = FlowNodeOutcome::success;
    for (const auto& [node, result] : results) {
        const bool isFailure = result.outcome == FlowNodeOutcome::failed;
        if (isFailure && !planned.contains(node))
            return FlowNodeOutcome::failed;
        if (result.outcome == FlowNodeOutcome::cancelled)
            outcome = FlowNodeOutcome::cancelled;
        else if ((isFailure || result.outcome == FlowNodeOutcome::warning) &&
                 outcome == FlowNodeOutcome::success)
            outcome = FlowNodeOutcome::warning;
    }
    return outcome;
}

FlowResults resultsToKeep(const Flow& flow, const FlowResults& results) {
    FlowResults kept;
    for (const FlowNode& node : flow.nodes) {
        const auto found = results.find(node.id);
        // What was skipped would be skipped again as long as all before it stays.
        if (found != results.end() && found->second.outcome != FlowNodeOutcome::failed &&
            found->second.outcome != FlowNodeOutcome::cancelled)
            kept.insert(*found);
    }
    std::unordered_map<Uuid, std::vector<Uuid>> next;
    std::vector<Uuid> again;
    for (const FlowEdge& edge : flow.edges) {
        next[edge.from].push_back(edge.to);
        if (!kept.contains(edge.from))
            again.push_back(edge.to);
    }
    while (!again.empty()) {
        const Uuid node = again.back();
        again.pop_back();
        if (kept.erase(node) == 0)
            continue;
        if (const auto after = next.find(node); after != next.end())
            again.insert(again.end(), after->second.begin(), after->second.end());
    }
    return kept;
}

Outcome logOutcome(FlowNodeOutcome outcome) {
    switch (outcome) {
    case FlowNodeOutcome::warning:
        return Outcome::warning;
    case FlowNodeOutcome::failed:
        return Outcome::failed;
    case FlowNodeOutcome::cancelled:
        return Outcome::cancelled;
    case FlowNodeOutcome::success:
    case FlowNodeOutcome::skipped:
        break;
    }
    return Outcome::success;
}

Trigger logTrigger(FlowRunTrigger trigger) {
    for (const auto& row : describe<Trigger>.rows)
        if (row.raw == rawValue(trigger))
            return row.value;
    return Trigger::flow;
}

} // namespace vh::flows
