#include "Core/Schedule.h"

#include "Core/Codec.h"
#include "Core/ScheduledTask.h"
#include "Core/Texts.h"

#include <gtest/gtest.h>

#include <climits>

namespace vh {
namespace {

Date date(std::string_view text) {
    return *parseIso8601(text);
}

struct NextRunCase {
    const char* what;
    const char* zone;
    Schedule schedule;
    const char* after;
    std::vector<const char*> runs; ///< in UTC
};

const NextRunCase cases[] = {
    {"at its own time it is tomorrow's",
     "UTC",
     DailySchedule{9, 0},
     "2026-03-01T09:00:00Z",
     {"2026-03-02T09:00:00Z"}},
    {"a second before it is today's",
     "UTC",
     DailySchedule{9, 0},
     "2026-03-01T08:59:59Z",
     {"2026-03-01T09:00:00Z"}},
    {"over the end of a leap year's February and of the year",
     "UTC",
     DailySchedule{0, 0},
     "2028-02-28T12:00:00Z",
     {"2028-02-29T00:00:00Z", "2028-03-01T00:00:00Z"}},
    {"over the year",
     "Asia/Kolkata",
     DailySchedule{0, 15},
     "2026-12-31T18:44:00Z",
     {"2026-12-31T18:45:00Z", "2027-01-01T18:45:00Z"}},
    {"a week keeps its time over a change of the clock",
     "Europe/Madrid",
     WeeklySchedule{1, 9, 0},
     "2026-03-22T08:00:00Z",
     {"2026-03-29T07:00:00Z", "2026-04-05T07:00:00Z"}},
    {"the days of a week that lie behind are next week's",
     "UTC",
     WeeklySchedule{7, 0, 0},
     "2026-12-27T00:00:00Z",
     {"2027-01-02T00:00:00Z", "2027-01-09T00:00:00Z"}},
    {"spring: a skipped time comes an hour later",
     "Europe/Madrid",
     DailySchedule{2, 30},
     "2026-03-28T12:00:00Z",
     {"2026-03-29T01:30:00Z", "2026-03-30T00:30:00Z"}},
    {"autumn: a repeated time comes once",
     "Europe/Madrid",
     DailySchedule{2, 30},
     "2026-10-24T12:00:00Z",
     {"2026-10-25T00:30:00Z", "2026-10-26T01:30:00Z"}},
    {"asked within the second of the two hours",
     "Europe/Madrid",
     DailySchedule{2, 30},
     "2026-10-25T01:10:00Z",
     {"2026-10-26T01:30:00Z"}},
    {"half an hour skipped",
     "Australia/Lord_Howe",
     DailySchedule{2, 15},
     "2026-10-03T10:00:00Z",
     {"2026-10-03T15:45:00Z", "2026-10-04T15:15:00Z"}},
    {"half an hour repeated",
     "Australia/Lord_Howe",
     DailySchedule{1, 45},
     "2026-04-04T14:46:00Z",
     {"2026-04-05T15:15:00Z"}},
    {"two hours skipped",
     "Antarctica/Troll",
     DailySchedule{2, 0},
     "2026-03-28T12:00:00Z",
     {"2026-03-29T02:00:00Z", "2026-03-30T00:00:00Z"}},
    {"midnight skipped",
     "Asia/Beirut",
     DailySchedule{0, 0},
     "2026-03-28T12:00:00Z",
     {"2026-03-28T22:00:00Z", "2026-03-29T21:00:00Z"}},
    // At 00:01 the clock went back to 23:01 of the day before, so the first minute of the day came twice.
    {"the start of a day shown twice",
     "America/St_Johns",
     DailySchedule{0, 0},
     "2005-10-30T02:45:00Z",
     {"2005-10-31T03:30:00Z"}},
    {"a day that was left out",
     "Pacific/Apia",
     DailySchedule{9, 0},
     "2011-12-29T19:00:00Z",
     {"2011-12-30T19:00:00Z", "2011-12-31T19:00:00Z"}},
    {"hours are hours",
     "Europe/Madrid",
     HourlySchedule{6},
     "2026-03-28T23:00:00Z",
     {"2026-03-29T05:00:00Z", "2026-03-29T11:00:00Z"}},
    {"no hour is one", "UTC", HourlySchedule{0}, "2026-03-01T00:00:00Z", {"2026-03-01T01:00:00Z"}},
};

TEST(Schedule, NextRun) {
    for (const NextRunCase& each : cases) {
        const LocalCalendar calendar(each.zone);
        Date at = date(each.after);
        for (const char* expected : each.runs) {
            at = nextRun(each.schedule, at, calendar);
            EXPECT_EQ(iso8601(at), expected) << each.what;
        }
    }
}

TEST(Schedule, NextRunIsAlwaysLaterAndNearEnough) {
    const Schedule schedules[] = {DailySchedule{0, 0}, DailySchedule{2, 30}, DailySchedule{23, 59},
                                  WeeklySchedule{1, 2, 15}};
    for (const char* zone : {"America/St_Johns", "Australia/Lord_Howe", "Antarctica/Troll", "Asia/Beirut"}) {
        const LocalCalendar calendar(zone);
        for (const Schedule& schedule : schedules) {
            const auto longest = std::chrono::hours(schedule.index() == 0 ? 2 * 24 : 8 * 24);
            for (Date at = date("2005-01-01T00:00:00Z"); at < date("2006-01-01T00:00:00Z");
                 at += std::chrono::minutes(257)) {
                const Date run = nextRun(schedule, at, calendar);
                ASSERT_GT(run, at) << zone << iso8601(at);
                ASSERT_LE(run - at, longest) << zone << iso8601(at);
            }
        }
    }
}

TEST(Schedule, NumbersOutOfRangeAreFaultsAndDoNoHarm) {
    const std::pair<Schedule, const char*> faulty[] = {
        {DailySchedule{24, 0}, "schedule.fault.time"},
        {DailySchedule{INT_MIN, INT_MAX}, "schedule.fault.time"},
        {WeeklySchedule{0, 9, 0}, "schedule.fault.weekday"},
        {WeeklySchedule{INT_MAX, INT_MAX, INT_MIN}, "schedule.fault.weekday"},
        {WeeklySchedule{2, 9, 60}, "schedule.fault.time"},
        {HourlySchedule{-1}, "schedule.fault.hours"},
        {HourlySchedule{INT_MAX}, "schedule.fault.hours"},
    };
    const Date now = date("2026-03-01T12:00:00Z");
    for (const auto& [schedule, fault] : faulty) {
        EXPECT_EQ(faultOf(schedule), fault);
        EXPECT_GT(nextRun(schedule, now, LocalCalendar("UTC")), now);
        EXPECT_NE(description(schedule, Texts(Language::en)), "");
    }
    EXPECT_EQ(faultOf(WeeklySchedule{7, 23, 59}), std::nullopt);
}

TEST(Schedule, SaysWhen) {
    const std::tuple<Schedule, const char*, const char*> said[] = {
        {HourlySchedule{1}, "Every hour", "Toutes les heures"},
        {HourlySchedule{6}, "Every 6 hours", "Toutes les 6 heures"},
        {WeeklySchedule{2, 9, 0}, "Mondays at 09:00", "Le lundi à 09:00"},
        {WeeklySchedule{99, 9, 5}, "Saturdays at 09:05", "Le samedi à 09:05"},
        {DailySchedule{21, 30}, "Every day at 21:30", "Chaque jour à 21:30"},
    };
    for (const auto& [schedule, english, french] : said) {
        EXPECT_EQ(description(schedule, Texts(Language::en)), english);
        EXPECT_EQ(description(schedule, Texts(Language::fr)), french);
    }
}

TEST(ScheduledTask, HasTheStoredForm) {
    const Date now = date("2026-03-01T12:00:00Z");
    const ScheduledTask task = makeTask("Clean", "system-junk", "system-junk", {{"k", "v"}},
                                        WeeklySchedule{2, 9, 0}, true, now, LocalCalendar("UTC"));
    EXPECT_EQ(
        encodeJson(std::vector{task}),
        R"([{"actionID":"system-junk","id":")" + task.id.text() +
            R"(","isEnabled":true,"nextRun":"2026-03-02T09:00:00Z","payload":{"k":"v"},"runIfMissed":true,)"
            R"("schedule":{"weekly":{"hour":9,"minute":0,"weekday":2}},"title":"Clean","toolID":"system-junk"}])");
    EXPECT_EQ(encodeJson<Schedule>(HourlySchedule{3}), R"({"everyHours":{"_0":3}})");
}

TEST(ScheduledTask, IsDueWithinTheGraceOrWhenItCatchesUp) {
    const Date due = date("2026-03-01T12:00:00Z");
    struct Row {
        int secondsLate;
        bool runIfMissed;
        bool isDue;
        bool isMissed;
    };
    for (const Row& row :
         {Row{-1, true, false, false}, Row{0, false, true, false}, Row{840, false, true, false},
          Row{900, false, true, false}, Row{901, false, false, true}, Row{960, true, true, false}}) {
        ScheduledTask task{.runIfMissed = row.runIfMissed, .nextRun = due};
        const Date now = due + std::chrono::seconds(row.secondsLate);
        EXPECT_EQ(isDue(task, now), row.isDue) << row.secondsLate;
        EXPECT_EQ(isMissed(task, now), row.isMissed) << row.secondsLate;
        task.isEnabled = false;
        EXPECT_FALSE(isDue(task, now) || isMissed(task, now));
        task = {.runIfMissed = true};
        EXPECT_FALSE(isDue(task, now) || isMissed(task, now)) << "without a next run";
    }
}

} // namespace
} // namespace vh
