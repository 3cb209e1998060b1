#pragma once

#include "Features/Optimize/work/OptimizeRun.h"

#include <optional>

namespace vh::automation {

/// One look at what the steps would do. One thread.
class OptimizeCheck {
public:
    using Check = OptimizeRunner::Check;

    OptimizeCheck(const OptimizeParts& parts, const JobControl& control);
    /// Never throws. Ends early when cancelled.
    std::vector<Check> run(const std::vector<OptimizeProfile::Step>& steps);

private:
    void look(const OptimizeProfile::Step& step);
    void lookAtTasks(const OptimizeProfile::Step& step);
    Check lookAtItems(ScheduledAction action);
    Check failure(ScheduledAction action, const std::string& reason) const;
    Check line(ScheduledAction action, std::string detail) const;

    const OptimizeParts parts_;
    const JobControl& control_;
    const Texts texts_;
    const std::chrono::steady_clock::time_point deadline_;
    std::vector<Check> checks_;
};

} // namespace vh::automation
