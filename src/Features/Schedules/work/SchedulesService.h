#pragma once

#include "Automation/Service.h"
#include "Core/Uuid.h"
#include "Features/Schedules/work/Scheduler.h"

#include <memory>

namespace vh::automation {

class Automation;

/// Runs scheduled tasks in this process. Main thread.
class SchedulesService : public Service {
public:
    explicit SchedulesService(Automation& automation) : automation_(automation) {}

    /// Made when first asked for: it reads the schedules.
    Scheduler& scheduler();

    std::string_view name() const override { return "schedules"; }
    void lead() override { scheduler().start(); }
    void stop() override;
    std::vector<RunningWork> running() const override;

private:
    void look();

    Automation& automation_;
    std::unique_ptr<Scheduler> scheduler_;
    std::shared_ptr<void> observing_;
    std::optional<Uuid> task_; ///< that runs
    RunningWork work_;         ///< as it was when the task began: it may be removed meanwhile
};

} // namespace vh::automation
