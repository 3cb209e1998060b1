#include "Core/RunHandle.h"

#include "Core/RunLog.h"

#include <algorithm>

namespace vh {

RunHandle::RunHandle(RunLog& log, Kind kind, std::string toolID, Trigger trigger, RunDetails details,
                     Date startedAt)
    : log_(log), kind_(kind), toolID_(std::move(toolID)), trigger_(trigger), details_(std::move(details)),
      startedAt_(startedAt) {}

bool RunHandle::isFinished() const {
    const std::lock_guard guard(mutex_);
    return record_.has_value();
}

std::optional<RunRecord> RunHandle::close(Outcome outcome, RunWords words, const RunMetrics& metrics,
                                          const RunDetails& details) {
    RunRecord record{.id = id_,
                     .toolID = toolID_,
                     .startedAt = startedAt_,
                     .duration = std::max(Seconds(log_.now() - startedAt_).count(), 0.0),
                     .outcome = outcome,
                     .trigger = trigger_,
                     .summary = std::move(words.summary),
                     .computer = RunLog::thisComputer()};
    for (const auto& [metric, value] : metrics)
        record.metrics.emplace(rawValue(metric), value);
    RunDetails merged = details;
    merged.insert(details_.begin(), details_.end());
    if (!words.problems.empty())
        merged[RunDetail::errors] = std::move(words.problems);
    record.details = rawDetails(merged);
    record.facts = std::move(words.facts);

    const std::lock_guard guard(mutex_);
    if (record_)
        return std::nullopt;
    return record_ = std::move(record);
}

RunRecord RunHandle::closedRecord() const {
    const std::lock_guard guard(mutex_);
    return *record_;
}

RunRecord RunHandle::finish(Outcome outcome, RunWords words, const RunMetrics& metrics,
                            const RunDetails& details) {
    const auto record = close(outcome, std::move(words), metrics, details);
    if (record && kind_ == Kind::whole)
        log_.record(*record);
    return closedRecord();
}

} // namespace vh
