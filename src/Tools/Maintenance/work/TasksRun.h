#pragma once

#include "Core/JobControl.h"
#include "Core/RunWords.h"
#include "Core/Texts.h"
#include "HelperKit/MaintenanceWork.h"

#include <optional>
#include <string>
#include <vector>

namespace vh::automation {

/// Maintenance tasks, one after the other, without a person: one that cannot run or fails does not stop the others.
class TasksRun {
public:
    TasksRun(helper::MaintenanceWork work, const Texts& texts, const JobControl& control)
        : work_(std::move(work)), texts_(texts), control_(control) {}

    /// Blocks. A cancel ends it; what was done until then counts.
    void run(const std::vector<MaintenanceTask>& tasks);

    Outcome outcome() const;
    RunWords words() const;
    RunMetrics metrics() const;
    RunDetails details() const;

private:
    void runOne(MaintenanceTask task);

    const helper::MaintenanceWork work_;
    const Texts& texts_;
    const JobControl& control_;
    size_t done_ = 0;
    Messages needing_;            ///< titles of those that wait for the helper
    Messages failures_;           ///< lines
    std::optional<Message> left_; ///< a line on the task that goes on in the helper
    std::string output_;
    bool wasCancelled_ = false;
};

} // namespace vh::automation
