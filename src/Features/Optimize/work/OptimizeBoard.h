#pragma once

#include "Core/Observers.h"
#include "Features/Optimize/work/OptimizeRunner.h"

#include <mutex>

namespace vh {
class RunLog;
}

namespace vh::automation {

/// What the one-button run shows of itself. Any thread, but for observers.
class OptimizeBoard : public std::enable_shared_from_this<OptimizeBoard> {
public:
    using Snapshot = OptimizeRunner::Snapshot;

    explicit OptimizeBoard(MainLoop& loop) : loop_(loop) {}

    /// False while one runs already.
    bool beginRun(const std::vector<OptimizeProfile::Step>& steps, Date now, std::string detail);
    void endRun(const RunRecord& record);
    /// False while one checks already.
    bool beginCheck();
    void endCheck(std::vector<OptimizeRunner::Check> checks, Date now);

    std::vector<OptimizeRunner::Step> steps() const;
    /// Shows the step as it is now.
    void setStep(const OptimizeRunner::Step& step);
    void setDetail(std::string detail);
    /// The last run is looked up in the log the first time.
    Snapshot snapshot(const RunLog& log);

    /// Of the run of now.
    void requestCancel();
    bool isCancelRequested() const;

    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed) {
        return observers_.add(std::move(changed));
    }

private:
    void tell();

    MainLoop& loop_;
    mutable std::mutex mutex_;
    Snapshot shown_;
    bool knowsLast_ = false;
    bool isCancelRequested_ = false;
    bool isTelling_ = false;
    Observers<> observers_; ///< main thread
};

} // namespace vh::automation
