#include "Features/Activity/command/RunFilterOptions.h"

#include "Core/Printable.h"
#include "Core/ToolTexts.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Day.h"

#include <charconv>
#include <fmt/ranges.h>

namespace vh::cli {

namespace {

/// The raw values of an enumeration, for help lines and errors.
template <class E>
std::string rawValues() {
    std::vector<std::string_view> names;
    for (const E each : allCases<E>())
        names.push_back(rawValue(each));
    return fmt::format("{}", fmt::join(names, "|"));
}

[[noreturn]] void failWord(std::string_view word, std::string_view expected) {
    throw UsageError(fmt::format("{}: {}", printable(word), expected));
}

template <class E>
std::optional<E> caseOf(const std::string& word) {
    if (word.empty())
        return std::nullopt;
    const auto found = fromRaw<E>(word);
    if (!found)
        failWord(word, rawValues<E>());
    return found;
}

constexpr std::string_view periodWords = "today|yesterday|all|DAYS";

Period periodOf(const RunFilterOptions& options, const LocalCalendar& calendar) {
    if (!options.from.empty() || !options.to.empty())
        return DayRange{options.from.empty() ? Date() : parseDay(options.from, calendar),
                        options.to.empty() ? systemNow() : parseDay(options.to, calendar)};
    if (options.period.empty() || options.period == "all")
        return AnyTime{};
    if (options.period == "today")
        return Today{};
    if (options.period == "yesterday")
        return Yesterday{};
    int days = 0;
    const char* end = options.period.data() + options.period.size();
    if (std::from_chars(options.period.data(), end, days).ptr != end || days < 0)
        failWord(options.period, periodWords);
    return LastDays{days};
}

} // namespace

void RunFilterOptions::addTo(Verb& verb, const CommandLine& line) {
    const auto add = [&](const char* name, std::string& value, const char* key, std::string_view words) {
        verb.option(name, &value, line.text(key)).valueName(std::string(words));
    };
    add("--tool", tool, "cli.filter.tool", "ID");
    add("--period", period, "cli.filter.period", periodWords);
    add("--from", from, "cli.filter.from", "YYYY-MM-DD");
    add("--to", to, "cli.filter.to", "YYYY-MM-DD");
    add("--outcome", outcome, "cli.filter.outcome", rawValues<Outcome>());
    add("--computer", computer, "cli.filter.computer", "NAME");
    add("--trigger", trigger, "cli.filter.trigger", "TRIGGER");
    add("--text", text, "cli.filter.text", "TEXT");
}

RunFilter RunFilterOptions::filter(const LocalCalendar& calendar) const {
    RunFilter filter;
    if (!tool.empty())
        filter.toolID = tool;
    if (!computer.empty())
        filter.computer = computer;
    filter.period = periodOf(*this, calendar);
    filter.outcome = caseOf<Outcome>(outcome);
    filter.trigger = caseOf<Trigger>(trigger);
    filter.text = text;
    return filter;
}

std::vector<RunRecord> matchingRuns(app::Session& session, const RunFilter& filter, size_t most) {
    if (filter == RunFilter())
        return session.runLog().recent(most);
    const auto nameOf = [&](const std::string& id) {
        return toolName(session.texts(), id);
    };
    return session.runLog().search(
        RunMatcher(filter, {nameOf, RunLog::thisComputer(), systemNow(), LocalCalendar(), session.texts()}),
        most);
}

} // namespace vh::cli
