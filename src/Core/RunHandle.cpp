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

std::optional<RunRecord> RunHandle::close(Outcome outcome, std::string summary, const RunMetrics& metrics,
                                          const RunDetails& details) {
    RunRecord record{.id = id_,
                     .toolID = toolID_,
                     .startedAt = startedAt_,
                     .duration = std::max(Seconds(log_.now() - startedAt_).count(), 0.0),
                     .outcome = outcome,
                     .trigger = trigger_,
                     .summary = std::move(summary),
                     .computer = RunLog::thisComputer()};
    for (const auto& [metric, value] : metrics)
        record.metrics.emplace(rawValue(metric), value);
    RunDetails merged = details;
    merged.insert(details_.begin(), details_.end());
    record.details = rawDetails(merged);

    const std::lock_guard guard(mutex_);
    if (record_)
        return std::nullopt;
    return record_ = std::move(record);
}

RunRecord RunHandle::closedRecord() const {
    const std::lock_guard guard(mutex_);
    return *record_;
}

RunRecord RunHandle::finish(Outcome outcome, std::string summary, const RunMetrics& metrics,
                            const RunDetails& details) {
    const auto record = close(outcome, std::move(summary), metrics, details);
    if (record && kind_ == Kind::whole)
        log_.record(*record);
    return closedRecord();
}

} // namespace vh
