#pragma once

#include "Automation/Service.h"
#include "Features/Optimize/work/OptimizeRunner.h"

namespace vh::automation {

class Automation;

/// The one button in this process, also for schedules and flows. Main thread.
class OptimizeService : public Service {
public:
    explicit OptimizeService(Automation& automation);

    OptimizeRunner& runner() { return runner_; }

    /// The key of its work among what runs, and its tool.
    static constexpr const char* key = "optimize";

    std::string_view name() const override { return key; }
    void stop() override { runner_.requestCancel(); }
    std::vector<RunningWork> running() const override;

private:
    const AutomationDependencies& dependencies_;
    OptimizeRunner runner_;
    std::shared_ptr<void> observing_;
};

} // namespace vh::automation
