#include "Features/Schedules/work/SchedulesService.h"

#include "Automation/Automation.h"
#include "Core/ScheduleStore.h"

namespace vh::automation {

Scheduler& SchedulesService::scheduler() {
    if (!scheduler_) {
        scheduler_ = std::make_unique<Scheduler>(automation_.dependencies(), automation_.schedules(),
                                                 automation_.actions());
        observing_ = scheduler_->observe([this] { look(); });
    }
    return *scheduler_;
}

void SchedulesService::stop() {
    if (scheduler_)
        scheduler_->stopRunning();
}

void SchedulesService::look() {
    const auto now = scheduler_->runningTaskID();
    if (now != task_) {
        task_ = now;
        work_ = {.key = "scheduler", .saidAs = "cli.serve.task"};
        if (const auto task = now ? automation_.schedules().task(*now) : std::nullopt) {
            work_.title = task->title;
            work_.toolID = task->toolID;
        }
    }
    tell();
}

std::vector<RunningWork> SchedulesService::running() const {
    return task_ ? std::vector{work_} : std::vector<RunningWork>();
}

} // namespace vh::automation
