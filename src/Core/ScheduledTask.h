#pragma once

#include "Core/Describe.h"
#include "Core/Message.h"
#include "Core/RunRecord.h"
#include "Core/Schedule.h"
#include "Core/Uuid.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// What a schedule can start, beside flows.
enum class ScheduledAction {
    cleanStorage,
    cleanPrivacy,
    maintenance,
    smartHealth,
    folderSync,
    optimize,
    backup
};

class Texts;
Message titleMessage(ScheduledAction action);
std::string titleOf(ScheduledAction action, const Texts& texts);

/// The action identifier of a task that runs the flow which its payload names under "flow".
inline constexpr std::string_view flowAction = "nodes-flow";

/// How late a task may still start unless it is to catch up always.
inline constexpr std::chrono::seconds missedGrace{900};

/// A tool that runs by itself, as it stands in "schedules.json".
struct ScheduledTask {
    Uuid id;
    std::string title;
    std::string toolID;
    std::string actionID; ///< raw value of a ScheduledAction, or flowAction
    std::map<std::string, std::string> payload;
    Schedule schedule;
    bool isEnabled = true;
    bool runIfMissed = false;
    std::optional<Date> lastRun;
    std::optional<Outcome> lastOutcome;
    std::optional<Date> nextRun;
    std::optional<std::string> company; ///< who set it, when a fleet administrator did

    bool operator==(const ScheduledTask&) const = default;
};

/// A new task, enabled, with its first run after `now`.
ScheduledTask makeTask(std::string title, std::string toolID, std::string actionID,
                       std::map<std::string, std::string> payload, const Schedule& schedule, bool runIfMissed,
                       Date now, const LocalCalendar& calendar);

/// Whether it is time: enabled, with a next run at or before `now` that is within the grace or to be caught up.
bool isDue(const ScheduledTask& task, Date now, std::chrono::seconds grace = missedGrace);
/// Whether its time went by unused: overdue by more than the grace and not to be caught up.
bool isMissed(const ScheduledTask& task, Date now, std::chrono::seconds grace = missedGrace);

template <>
inline constexpr auto describe<ScheduledAction> =
    enumeration<ScheduledAction>({{ScheduledAction::cleanStorage, "system-junk"},
                                  {ScheduledAction::cleanPrivacy, "privacy-cleaner"},
                                  {ScheduledAction::maintenance, "maintenance"},
                                  {ScheduledAction::smartHealth, "smart-health"},
                                  {ScheduledAction::folderSync, "sync"},
                                  {ScheduledAction::optimize, "optimize"},
                                  {ScheduledAction::backup, "backups"}});

template <>
inline constexpr auto describe<ScheduledTask> =
    record(field("id", &ScheduledTask::id), field("title", &ScheduledTask::title),
           field("toolID", &ScheduledTask::toolID), field("actionID", &ScheduledTask::actionID),
           field("payload", &ScheduledTask::payload), field("schedule", &ScheduledTask::schedule),
           field("isEnabled", &ScheduledTask::isEnabled), field("runIfMissed", &ScheduledTask::runIfMissed),
           field("lastRun", &ScheduledTask::lastRun), field("lastOutcome", &ScheduledTask::lastOutcome),
           field("nextRun", &ScheduledTask::nextRun), field("company", &ScheduledTask::company));

} // namespace vh
