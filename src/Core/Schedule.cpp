#include "Core/Schedule.h"

#include "Core/Texts.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace vh {

namespace {

using std::chrono::minutes;

constexpr int daysInWeek = 7;
constexpr int longestPause = 1'000'000; ///< hours; far enough for anybody, and no date overflows

/// Numbers out of range count as the nearest ones that are in it.
minutes timeOfDay(int hour, int minute) {
    return minutes(std::clamp(hour, 0, 23) * 60 + std::clamp(minute, 0, 59));
}

/// The first of the days `first`, `first` + `step`, … at which the time comes after `after`. One step is not always
/// enough: a clock set back over midnight shows the start of the next day twice.
Date firstAfter(Date after, int first, int step, minutes time, const LocalCalendar& calendar) {
    for (int day = first;; day += step)
        if (const Date run = calendar.atTime(after, day, time); run > after)
            return run;
}

struct NextRun {
    Date after;
    const LocalCalendar& calendar;

    Date operator()(const DailySchedule& daily) const {
        return firstAfter(after, 0, 1, timeOfDay(daily.hour, daily.minute), calendar);
    }
    Date operator()(const WeeklySchedule& weekly) const {
        const int ahead = std::clamp(weekly.weekday, 1, daysInWeek) - calendar.weekday(after);
        return firstAfter(after, (ahead + daysInWeek) % daysInWeek, daysInWeek,
                          timeOfDay(weekly.hour, weekly.minute), calendar);
    }
    Date operator()(const HourlySchedule& hourly) const {
        return after + std::chrono::hours(std::clamp(hourly.hours, 1, longestPause));
    }
};

bool isTime(int hour, int minute) {
    return hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59;
}

struct FaultOf {
    const char* operator()(const DailySchedule& daily) const {
        return isTime(daily.hour, daily.minute) ? nullptr : "schedule.fault.time";
    }
    const char* operator()(const WeeklySchedule& weekly) const {
        if (weekly.weekday < 1 || weekly.weekday > daysInWeek)
            return "schedule.fault.weekday";
        return isTime(weekly.hour, weekly.minute) ? nullptr : "schedule.fault.time";
    }
    const char* operator()(const HourlySchedule& hourly) const {
        return hourly.hours >= 0 && hourly.hours <= longestPause ? nullptr : "schedule.fault.hours";
    }
};

struct Description {
    const Texts& texts;

    std::string operator()(const DailySchedule& daily) const {
        return texts.text("schedule.daily", {{"time", time(daily.hour, daily.minute)}});
    }
    std::string operator()(const WeeklySchedule& weekly) const {
        // Whole sentences: the plural of a weekday is no "s" at its end elsewhere.
        static constexpr std::array<std::string_view, daysInWeek> keys{
            "schedule.weekly.sunday",    "schedule.weekly.monday",   "schedule.weekly.tuesday",
            "schedule.weekly.wednesday", "schedule.weekly.thursday", "schedule.weekly.friday",
            "schedule.weekly.saturday"};
        const int day = std::clamp(weekly.weekday, 1, daysInWeek) - 1;
        return texts.text(keys[static_cast<size_t>(day)], {{"time", time(weekly.hour, weekly.minute)}});
    }
    std::string operator()(const HourlySchedule& hourly) const {
        return texts.text("schedule.hourly", {{"count", std::max(hourly.hours, 1)}});
    }

    static std::string time(int hour, int minute) { return fmt::format("{:02}:{:02}", hour, minute); }
};

} // namespace

Date nextRun(const Schedule& schedule, Date after, const LocalCalendar& calendar) {
    return std::visit(NextRun{after, calendar}, schedule);
}

std::optional<std::string> faultOf(const Schedule& schedule) {
    const char* fault = std::visit(FaultOf{}, schedule);
    return fault ? std::optional<std::string>(fault) : std::nullopt;
}

std::string description(const Schedule& schedule, const Texts& texts) {
    return std::visit(Description{texts}, schedule);
}

} // namespace vh
