#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/RunRecord.h"
#include "Core/Uuid.h"
#include "Platform/FileLock.h"

#include <memory>
#include <optional>
#include <string>

namespace vh::automation {

/// What a process says of the task that it runs, so that others can tell when it was killed.
struct TaskClaim {
    Uuid task;
    std::string title;
    std::string toolID;
    Trigger trigger = Trigger::scheduled;
    std::optional<Date> due; ///< the run it was due for; nothing for one started by hand
    Date startedAt;
};

/// The right to run a task, which one process at a time has: a lock beside the tasks' file, and the claim of who has
/// it. One thread at a time.
class TaskTurn {
public:
    /// Nothing while another has it, this process included. Throws SystemError.
    static std::unique_ptr<TaskTurn> take(const std::string& tasksFile);
    ~TaskTurn() { end(); }
    TaskTurn(const TaskTurn&) = delete;
    TaskTurn& operator=(const TaskTurn&) = delete;

    /// The claim that a killed process left.
    std::optional<TaskClaim> leftover() const;
    /// A claim that cannot be written keeps nobody from running the task.
    void claim(const TaskClaim& claim);
    /// Takes the claim back and gives the turn on.
    void end();

private:
    TaskTurn(FileLock lock, std::string claimFile);
    std::optional<FileLock> lock_;
    const std::string claimFile_;
};

} // namespace vh::automation

namespace vh {
template <>
inline constexpr auto describe<automation::TaskClaim> =
    record(field("task", &automation::TaskClaim::task), field("title", &automation::TaskClaim::title),
           field("toolID", &automation::TaskClaim::toolID), field("trigger", &automation::TaskClaim::trigger),
           field("due", &automation::TaskClaim::due), field("startedAt", &automation::TaskClaim::startedAt));
} // namespace vh
