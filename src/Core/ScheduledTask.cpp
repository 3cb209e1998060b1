#include "Core/ScheduledTask.h"

#include "Core/Texts.h"

#include <fmt/format.h>

namespace vh {

Message titleMessage(ScheduledAction action) {
    return {fmt::format("scheduled-action.{}.title", rawValue(action)), {}};
}

std::string titleOf(ScheduledAction action, const Texts& texts) {
    return worded(titleMessage(action), texts);
}

ScheduledTask makeTask(std::string title, std::string toolID, std::string actionID,
                       std::map<std::string, std::string> payload, const Schedule& schedule, bool runIfMissed,
                       Date now, const LocalCalendar& calendar) {
    return {.id = Uuid::random(),
            .title = std::move(title),
            .toolID = std::move(toolID),
            .actionID = std::move(actionID),
            .payload = std::move(payload),
            .schedule = schedule,
            .runIfMissed = runIfMissed,
            .nextRun = nextRun(schedule, now, calendar)};
}

bool isDue(const ScheduledTask& task, Date now, std::chrono::seconds grace) {
    return task.isEnabled && task.nextRun && *task.nextRun <= now &&
           (task.runIfMissed || now - *task.nextRun <= grace);
}

bool isMissed(const ScheduledTask& task, Date now, std::chrono::seconds grace) {
    return task.isEnabled && task.nextRun && now - *task.nextRun > grace && !task.runIfMissed;
}

} // namespace vh
