#pragma once

#include "Core/RunRecord.h"
#include "Features/Flows/FlowRun.h"

#include <string>
#include <utility>

namespace vh::automation {

inline flows::FlowNodeResult failure(std::string summary, std::string output = {}) {
    return {flows::FlowNodeOutcome::failed, std::move(summary), std::move(output)};
}

/// A node whose work left a record of its own.
inline flows::FlowNodeResult resultOf(const RunRecord& record) {
    const auto outcome = fromRaw<flows::FlowNodeOutcome>(rawValue(record.outcome));
    return {outcome.value_or(flows::FlowNodeOutcome::failed), record.summary,
            record.detail(RunDetail::output).value_or("")};
}

} // namespace vh::automation
