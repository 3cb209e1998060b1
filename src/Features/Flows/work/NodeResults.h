#pragma once

#include "Core/Message.h"
#include "Core/RunWords.h"
#include "Features/Flows/FlowRun.h"

#include <string>
#include <utility>

namespace vh::automation {

inline flows::FlowNodeResult nodeResult(flows::FlowNodeOutcome outcome, Message said, const Texts& texts,
                                        std::string output = {}) {
    return {outcome, worded(said, texts), std::move(output), 0, {std::move(said)}};
}

inline flows::FlowNodeResult failure(Message said, const Texts& texts, std::string output = {}) {
    return nodeResult(flows::FlowNodeOutcome::failed, std::move(said), texts, std::move(output));
}

/// A node whose work left a record of its own.
inline flows::FlowNodeResult resultOf(const RunRecord& record) {
    const auto outcome = fromRaw<flows::FlowNodeOutcome>(rawValue(record.outcome));
    return {outcome.value_or(flows::FlowNodeOutcome::failed), record.summary,
            record.detail(RunDetail::output).value_or(""), 0, sentencesOf(record)};
}

} // namespace vh::automation
