#pragma once

#include "Core/RunRecord.h"
#include "Core/RunWords.h"

#include <mutex>
#include <optional>

namespace vh {

class RunLog;

/// A job that is under way; made by RunLog::begin. Finishing it writes its record, unless it is a part of another job;
/// one that is let go unfinished writes nothing. Any thread may call.
class RunHandle {
public:
    enum class Kind { whole, part };
    RunHandle(RunLog& log, Kind kind, std::string toolID, Trigger trigger, RunDetails details,
              Date startedAt);

    /// Writes the record, once: a second call only gives the first one's record again. Details given here win over
    /// those of begin; empty ones are left out.
    RunRecord finish(Outcome outcome, RunWords words, const RunMetrics& metrics = {},
                     const RunDetails& details = {});
    bool isFinished() const;

    /// The identifier the record will have.
    const Uuid& id() const { return id_; }
    const std::string& toolID() const { return toolID_; }
    Trigger trigger() const { return trigger_; }
    const RunDetails& details() const { return details_; }
    Date startedAt() const { return startedAt_; }

private:
    friend class RunJournal;
    /// The finished record, for the one who finishes first; nothing for everyone later.
    std::optional<RunRecord> close(Outcome outcome, RunWords words, const RunMetrics& metrics,
                                   const RunDetails& details);
    RunRecord closedRecord() const;

    RunLog& log_;
    const Kind kind_;
    const Uuid id_ = Uuid::random();
    const std::string toolID_;
    const Trigger trigger_;
    const RunDetails details_;
    const Date startedAt_;
    mutable std::mutex mutex_;
    std::optional<RunRecord> record_;
};

} // namespace vh
