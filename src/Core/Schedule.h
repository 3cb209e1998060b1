#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/LocalCalendar.h"

#include <optional>
#include <string>
#include <variant>

namespace vh {

class Texts;

struct DailySchedule {
    int hour = 0;
    int minute = 0;
    bool operator==(const DailySchedule&) const = default;
};
struct WeeklySchedule {
    int weekday = 1; ///< 1 is Sunday
    int hour = 0;
    int minute = 0;
    bool operator==(const WeeklySchedule&) const = default;
};
struct HourlySchedule {
    int hours = 1; ///< below 1 counts as 1
    bool operator==(const HourlySchedule&) const = default;
};

/// When something happens again and again.
using Schedule = std::variant<DailySchedule, WeeklySchedule, HourlySchedule>;

/// The first time after `after`, never at it. Wall-clock times are the calendar's: a time that the clock skips in
/// spring comes as much later as the clock leaps, one that it shows twice in autumn comes once.
Date nextRun(const Schedule& schedule, Date after, const LocalCalendar& calendar);

/// What is wrong with its numbers as a key of the "schedule.fault." family, nothing when they are times.
std::optional<std::string> faultOf(const Schedule& schedule);

/// "Every hour", "6 hours", "Every day at 09:00", "Mondays at 09:00", in the language of `texts`.
std::string description(const Schedule& schedule, const Texts& texts);

template <>
inline constexpr auto describe<DailySchedule> = record(field("hour", &DailySchedule::hour),
                                                       field("minute", &DailySchedule::minute));
template <>
inline constexpr auto describe<WeeklySchedule> = record(field("weekday", &WeeklySchedule::weekday),
                                                        field("hour", &WeeklySchedule::hour),
                                                        field("minute", &WeeklySchedule::minute));
template <>
inline constexpr auto describe<HourlySchedule> = record(field("_0", &HourlySchedule::hours));
template <>
inline constexpr auto describe<Schedule> = taggedUnion(unionCase<DailySchedule>("daily"),
                                                       unionCase<WeeklySchedule>("weekly"),
                                                       unionCase<HourlySchedule>("everyHours"));

} // namespace vh
