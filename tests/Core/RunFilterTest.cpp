#include "Core/RunFilter.h"

#include "Core/Codec.h"
#include "Core/DatabaseKeep.h"

#include <gmock/gmock.h>

namespace vh {
namespace {

Date at(std::string_view text) {
    return *parseIso8601(text);
}

TEST(LocalCalendar, DaysAreRightWhereTheClockChanges) {
    const struct {
        const char* zone;
        const char* date;
        int days;
        const char* start;
    } cases[] = {
        {"UTC", "2026-11-22T20:00:00Z", 0, "2026-11-22T00:00:00Z"},
        {"Europe/Madrid", "2026-11-22T23:30:00Z", 0, "2026-11-22T23:00:00Z"},
        {"Europe/Madrid", "2026-03-29T12:00:00Z", 0, "2026-03-28T23:00:00Z"}, // 23 hours
        {"Europe/Madrid", "2026-03-29T12:00:00Z", 1, "2026-03-29T22:00:00Z"},
        {"Europe/Madrid", "2026-10-25T12:00:00Z", 0, "2026-10-24T22:00:00Z"}, // 25 hours
        {"Europe/Madrid", "2026-10-25T12:00:00Z", 1, "2026-10-25T23:00:00Z"},
        {"America/Sao_Paulo", "2018-11-04T12:00:00Z", 0, "2018-11-04T03:00:00Z"}, // midnight does not exist
        {"America/Sao_Paulo", "2018-11-04T12:00:00Z", 1, "2018-11-05T02:00:00Z"},
        {"America/Havana", "2026-11-01T12:00:00Z", 0, "2026-11-01T04:00:00Z"}, // midnight twice
        {"Pacific/Apia", "2011-12-31T12:00:00Z", -2, "2011-12-30T10:00:00Z"},  // a day that does not exist
        {"Asia/Kathmandu", "2026-01-01T00:00:00Z", 60, "2026-03-01T18:15:00Z"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(iso8601(LocalCalendar(each.zone).startOfDay(at(each.date), each.days)), each.start)
            << each.zone << " " << each.date << " " << each.days;
    const LocalCalendar madrid("Europe/Madrid");
    EXPECT_EQ(iso8601(madrid.addDays(at("2026-03-28T10:00:00Z"), 1)), "2026-03-29T09:00:00Z");
    EXPECT_EQ(madrid.wallTime(at("2026-07-01T22:05:09.5Z")), (WallTime{2026, 7, 2, 0, 5, 9}));
    EXPECT_EQ(madrid.zone(), "Europe/Madrid");
    EXPECT_THROW(LocalCalendar("Europe/Atlantis"), std::invalid_argument);
}

TEST(RunFilter, PeriodsAreWholeLocalDays) {
    const LocalCalendar madrid("Europe/Madrid");
    const Date now = at("2026-03-30T10:00:00Z"); // the day after the clock went forward
    const struct {
        Period period;
        const char* from;
        const char* to;
    } cases[] = {
        {Today{}, "2026-03-29T22:00:00Z", "2026-03-30T22:00:00Z"},
        {Yesterday{}, "2026-03-28T23:00:00Z", "2026-03-29T22:00:00Z"},
        {LastDays{1}, "2026-03-29T22:00:00Z", "2026-03-30T22:00:00Z"},
        {LastDays{0}, "2026-03-29T22:00:00Z", "2026-03-30T22:00:00Z"},
        {LastDays{-5}, "2026-03-29T22:00:00Z", "2026-03-30T22:00:00Z"},
        {LastDays{3}, "2026-03-27T23:00:00Z", "2026-03-30T22:00:00Z"},
        {DayRange{at("2026-03-29T10:00:00Z"), at("2026-03-27T10:00:00Z")}, "2026-03-26T23:00:00Z",
         "2026-03-29T22:00:00Z"},
    };
    for (const auto& each : cases) {
        const auto interval = RunFilter{.period = each.period}.interval(now, madrid);
        ASSERT_TRUE(interval);
        EXPECT_EQ(iso8601(interval->from), each.from) << encodeJson(each.period);
        EXPECT_EQ(iso8601(interval->to), each.to) << encodeJson(each.period);
        EXPECT_EQ(decodeJson<Period>(encodeJson(each.period)), each.period);
    }
    EXPECT_EQ(RunFilter{}.interval(now, madrid), std::nullopt);
    EXPECT_EQ(encodeJson(Period(LastDays{3})), R"({"lastDays":{"_0":3}})");
    EXPECT_EQ(encodeJson(Period(AnyTime{})), R"({"all":{}})");
}

TEST(RunFilter, EveryWishMustBeMet) {
    const RunFilter::Surroundings dependencies{.toolName = [](const std::string& id) { return "Tool " + id; },
                                               .thisComputer = "Ateneo",
                                               .now = at("2026-11-22T12:00:00Z"),
                                               .calendar = LocalCalendar("UTC")};
    const RunRecord run{.toolID = "sync",
                        .startedAt = at("2026-11-22T00:00:00Z"),
                        .outcome = Outcome::warning,
                        .trigger = Trigger::flow,
                        .summary = "Copié l’ÉTÉ"};
    const struct {
        RunFilter filter;
        bool matches;
    } cases[] = {
        {{}, true},
        {{.toolID = "sync"}, true},
        {{.toolID = "syn"}, false},
        {{.period = Today{}}, true},
        {{.period = Yesterday{}}, false},
        {{.outcome = Outcome::warning}, true},
        {{.outcome = Outcome::success}, false},
        {{.computer = "Ateneo"}, true}, // a record without one counts as this computer's
        {{.computer = "Other"}, false},
        {{.trigger = Trigger::flow}, true},
        {{.trigger = Trigger::manual}, false},
        {{.text = "l’été"}, true},
        {{.text = "TOOL S"}, true},
        {{.text = "ateneo"}, true},
        {{.text = "warning"}, false},
        {{.toolID = "sync", .outcome = Outcome::warning, .text = "none of it"}, false},
    };
    for (const auto& each : cases)
        EXPECT_EQ(each.filter.matches(run, dependencies), each.matches) << encodeJson(each.filter);

    std::vector<RunRecord> runs(3, run);
    runs[0].summary = "b";
    runs[1].trigger = Trigger::idle;
    runs[2].summary = "a";
    const auto found = RunFilter{.trigger = Trigger::flow}.apply(runs, dependencies);
    EXPECT_THAT(found, testing::ElementsAre(runs[0], runs[2]));
}

TEST(Keep, CutsOffWhatIsOlder) {
    const Date now = at("2026-11-22T12:00:00Z");
    EXPECT_EQ(iso8601(*cutoff(Keep::days30, now)), "2026-10-23T12:00:00Z");
    EXPECT_EQ(iso8601(*cutoff(Keep::days90, now)), "2026-08-24T12:00:00Z");
    EXPECT_EQ(iso8601(*cutoff(Keep::months6, now)), "2026-05-24T12:00:00Z");
    EXPECT_EQ(iso8601(*cutoff(Keep::year, now)), "2025-11-22T12:00:00Z");
    EXPECT_EQ(cutoff(Keep::always, now), std::nullopt);
}

} // namespace
} // namespace vh
