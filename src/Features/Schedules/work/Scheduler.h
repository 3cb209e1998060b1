#pragma once

#include "Automation/AutomationDependencies.h"
#include "Automation/Worker.h"
#include "Core/ScheduleStore.h"
#include "Platform/MainLoop.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vh::automation {

class ScheduledActions;

/// Runs the tasks of the store when their time has come, one at a time among all processes. Main thread.
class Scheduler {
public:
    Scheduler(const AutomationDependencies& dependencies, ScheduleStore& store,
              const ScheduledActions& actions);
    ~Scheduler();

    /// Skips what was missed, looks at once and every 30 seconds from then on. A task that was killed half-way is
    /// marked as failed and not run again. Only the one process that leads automation calls it; a second call does
    /// nothing.
    void start();

    /// Runs a task now and leaves its next run alone. False when there is no such task or one is running.
    bool runNow(const Uuid& id);
    /// Asks the task that runs to stop.
    void stopRunning();
    void setEnabled(const Uuid& id, bool value);
    /// `byPerson`: the person did it, not the program.
    void remove(const Uuid& id, bool byPerson);
    /// Told, before it goes, of a task that a person removes although an administrator set it.
    void setOnRemovedByPerson(std::function<void(const ScheduledTask&)> f) {
        onRemovedByPerson_ = std::move(f);
    }

    const std::vector<ScheduledTask>& tasks() const { return tasks_; }
    /// The task that this process runs.
    const std::optional<Uuid>& runningTaskID() const { return runningTaskID_; }
    /// Of the last task that this process ran.
    const std::optional<RunRecord>& lastRecord() const { return lastRecord_; }
    const std::string& lastMessage() const { return lastMessage_; }
    /// What the task that runs is doing.
    const std::string& progressText() const { return progressText_; }

    /// Called on the main thread after each change, until the token goes.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> observer);

private:
    struct State;
    const AutomationDependencies& dependencies_;
    ScheduleStore& store_;
    const ScheduledActions& actions_;
    std::vector<ScheduledTask> tasks_;
    std::optional<Uuid> runningTaskID_;
    std::optional<RunRecord> lastRecord_;
    std::string lastMessage_;
    std::string progressText_;
    std::function<void(const ScheduledTask&)> onRemovedByPerson_;
    std::unique_ptr<State> state_;
};

} // namespace vh::automation
