#include "Features/Schedules/command/ScheduleWords.h"

#include "Core/Printable.h"
#include "Core/Texts.h"
#include "Core/ToolCatalog.h"
#include "cli/CommandLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace vh::cli {

namespace {

constexpr std::array<std::string_view, 7> weekdays{"sunday",   "monday", "tuesday", "wednesday",
                                                   "thursday", "friday", "saturday"};
constexpr std::string_view flowTool = "nodes";
constexpr int mostHours = 1'000'000;
constexpr const char* timeWords = "HH:MM";
constexpr const char* weeklyWords = "DAY@HH:MM";

[[noreturn]] void failWord(std::string_view word, std::string_view expected) {
    throw UsageError(fmt::format("{}: {}", printable(word), expected));
}

std::optional<int> number(std::string_view text) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && rest == end && !text.empty() ? std::optional(value) : std::nullopt;
}

struct TimeOfDay {
    int hour = 0;
    int minute = 0;
};

/// `word` is what the person typed, of which `text` is the time.
TimeOfDay timeOf(std::string_view text, std::string_view word, std::string_view expected) {
    const size_t colon = text.find(':');
    const auto hour = number(text.substr(0, colon));
    const auto minute = colon == std::string_view::npos ? std::nullopt : number(text.substr(colon + 1));
    if (!hour || !minute || text.size() - colon != 3)
        failWord(word, expected);
    return {*hour, *minute};
}

/// 1 to 7, or the English name or its beginning.
std::optional<int> weekdayOf(std::string word) {
    if (const auto day = number(word))
        return day;
    constexpr size_t shortest = 3;
    std::ranges::transform(word, word.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c | 0x20 : c; });
    const auto found = std::ranges::find_if(
        weekdays, [&](std::string_view day) { return word.size() >= shortest && day.starts_with(word); });
    return found == weekdays.end() ? std::nullopt : std::optional(int(found - weekdays.begin()) + 1);
}

Schedule weeklyOf(const std::string& word) {
    const size_t at = word.find('@');
    const auto day = weekdayOf(word.substr(0, at));
    if (!day || at == std::string::npos)
        failWord(word, weeklyWords);
    const TimeOfDay time = timeOf(std::string_view(word).substr(at + 1), word, weeklyWords);
    return WeeklySchedule{*day, time.hour, time.minute};
}

bool isTool(std::string_view id) {
    return ToolCatalog::tool(id) || fromRaw<ScheduledAction>(id) || id == flowTool;
}

std::string actionWords() {
    std::vector<std::string_view> words;
    for (const ScheduledAction action : allCases<ScheduledAction>())
        words.push_back(rawValue(action));
    words.push_back(flowAction);
    return fmt::format("{}", fmt::join(words, "|"));
}

} // namespace

void ScheduleOptions::addTo(Verb& verb, const CommandLine& line) {
    Option& everyDay = verb.option("--daily", &daily, line.text("cli.schedule.daily")).valueName(timeWords);
    Option& everyWeek =
        verb.option("--weekly", &weekly, line.text("cli.schedule.weekly")).valueName(weeklyWords);
    Option& hours = verb.option("--every-hours", &everyHours, line.text("cli.schedule.every-hours"))
                        .valueName("N")
                        .range(1, mostHours);
    everyDay.notWith(everyWeek).notWith(hours);
    everyWeek.notWith(hours);
}

Schedule ScheduleOptions::schedule(const Texts& texts) const {
    Schedule schedule;
    if (everyHours) {
        schedule = HourlySchedule{*everyHours};
    } else if (!weekly.empty()) {
        schedule = weeklyOf(weekly);
    } else if (!daily.empty()) {
        const TimeOfDay time = timeOf(daily, daily, timeWords);
        schedule = DailySchedule{time.hour, time.minute};
    } else {
        throw UsageError(texts.text("cli.schedule.when"));
    }
    if (const auto fault = faultOf(schedule))
        throw UsageError(texts.text(*fault));
    return schedule;
}

void TaskOptions::addTo(Verb& verb, const CommandLine& line) {
    verb.option("--title", &title, line.text("cli.schedule.title")).valueName("TITLE");
    verb.option("--tool", &tool, line.text("cli.schedule.tool")).valueName("ID");
    verb.option("--action", &action, line.text("cli.schedule.action")).valueName(actionWords());
    verb.option("--payload", &payload, line.text("cli.schedule.payload")).valueName("KEY=VALUE");
    when.addTo(verb, line);
}

void TaskOptions::applyTo(ScheduledTask& task, const Texts& texts) const {
    if (!action.empty()) {
        if (action != flowAction && !fromRaw<ScheduledAction>(action))
            failWord(action, actionWords());
        task.actionID = action;
    }
    if (!tool.empty() && !isTool(tool))
        throw UsageError(texts.text("cli.schedule.no-tool", {{"tool", printable(tool)}}));
    if (!tool.empty())
        task.toolID = tool;
    if (!title.empty())
        task.title = title;
    for (const std::string& word : payload) {
        const size_t equals = word.find('=');
        if (equals == std::string::npos || equals == 0)
            failWord(word, "KEY=VALUE");
        task.payload[word.substr(0, equals)] = word.substr(equals + 1);
    }
    if (when.isGiven())
        task.schedule = when.schedule(texts);
}

} // namespace vh::cli
