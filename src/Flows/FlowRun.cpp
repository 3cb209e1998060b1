#include "Flows/FlowRun.h"

#include "Flows/Flow.h"

namespace vh::flows {

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
