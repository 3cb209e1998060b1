#include "Core/RunFilter.h"

#include "Core/Fold.h"
#include "Core/RunWords.h"

#include <algorithm>
#include <fmt/format.h>

namespace vh {

namespace {

struct IntervalOf {
    Date now;
    const LocalCalendar& calendar;

    std::optional<DateInterval> operator()(LastDays period) const {
        return days(1 - std::max(period.days, 1), 1);
    }
    std::optional<DateInterval> operator()(const DayRange& range) const {
        const auto [first, last] = std::minmax(range.from, range.to);
        return DateInterval{calendar.startOfDay(first), calendar.startOfDay(last, 1)};
    }
    std::optional<DateInterval> operator()(AnyTime) const { return std::nullopt; }
    std::optional<DateInterval> operator()(Today) const { return days(0, 1); }
    std::optional<DateInterval> operator()(Yesterday) const { return days(-1, 0); }

private:
    DateInterval days(int from, int to) const {
        return {calendar.startOfDay(now, from), calendar.startOfDay(now, to)};
    }
};

template <class T>
bool isWanted(const std::optional<T>& wanted, const T& value) {
    return !wanted || *wanted == value;
}

/// No letter of it may stand in JSON in another way than by itself, nor come out of folding another one.
bool isPlain(std::string_view needle) {
    return !needle.empty() && std::ranges::all_of(needle, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == ' ' || c == '-' || c == '_';
    });
}

/// Whether the text stands in the line, whatever the case of its letters, or may do so in another way: behind an escape
/// or folded from letters beyond ASCII.
bool mayHold(std::string_view line, std::string_view plain) {
    thread_local std::string lower;
    lower.resize(line.size());
    unsigned char all = 0;
    bool hasEscape = false;
    char before = 0;
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        all |= static_cast<unsigned char>(c);
        hasEscape |= before == '\\' && c == 'u';
        before = c;
        lower[i] = static_cast<char>(c + (static_cast<unsigned char>(c - 'A') < 26 ? 'a' - 'A' : 0));
    }
    return all >= 0x80 || hasEscape || lower.find(plain) != std::string::npos;
}

/// Of an identifier, which stands in JSON as it is; members are sorted, so it is among the last.
std::string_view toolOf(std::string_view line) {
    constexpr std::string_view name = R"("toolID":")";
    const size_t at = line.rfind(name);
    if (at == std::string_view::npos)
        return {};
    const std::string_view rest = line.substr(at + name.size());
    return rest.substr(0, rest.find('"'));
}

} // namespace

RunMatcher::RunMatcher(RunFilter filter, RunFilter::Surroundings dependencies)
    : filter_(std::move(filter)), dependencies_(std::move(dependencies)),
      interval_(filter_.interval(dependencies_.now, dependencies_.calendar)),
      needle_(foldForSearch(filter_.text)), isPlainNeedle_(isPlain(needle_)),
      ownFacts_(dependencies_.texts
                    ? fmt::format(R"(facts":"{{\"language\":\"{}\")", code(dependencies_.texts->language()))
                    : ""),
      isOfThisComputer_(!needle_.empty() && containsFolded(dependencies_.thisComputer, needle_)) {}

bool RunMatcher::matches(const RunRecord& record) const {
    return (!interval_ || interval_->contains(record.startedAt)) && isWanted(filter_.toolID, record.toolID) &&
           isWanted(filter_.outcome, record.outcome) && isWanted(filter_.trigger, record.trigger) &&
           isWanted(filter_.computer, computerOf(record)) && (needle_.empty() || holdsText(record));
}

bool RunMatcher::mayMatch(std::string_view line) const {
    if (!isPlainNeedle_ || isOfThisComputer_ || mayHold(line, needle_) || nameHoldsText(toolOf(line)))
        return true;
    if (!dependencies_.texts)
        return false;
    // What may be shown in other words than it was written in; found by its first letter, which is rare there.
    const size_t facts = line.find(R"(facts":)");
    return facts != std::string_view::npos && !line.substr(facts).starts_with(ownFacts_);
}

const std::string& RunMatcher::computerOf(const RunRecord& record) const {
    return record.computer ? *record.computer : dependencies_.thisComputer;
}

bool RunMatcher::holdsText(const RunRecord& record) const {
    return nameHoldsText(record.toolID) || summaryHoldsText(record) ||
           containsFolded(computerOf(record), needle_);
}

bool RunMatcher::summaryHoldsText(const RunRecord& record) const {
    if (!dependencies_.texts || !record.facts)
        return containsFolded(record.summary, needle_);
    return containsFolded(summaryOf(record, *dependencies_.texts), needle_);
}

bool RunMatcher::nameHoldsText(std::string_view toolID) const {
    if (const auto known = names_.find(toolID); known != names_.end())
        return known->second;
    const std::string id(toolID);
    return names_[id] = containsFolded(dependencies_.toolName ? dependencies_.toolName(id) : id, needle_);
}

std::optional<DateInterval> RunFilter::interval(Date now, const LocalCalendar& calendar) const {
    return std::visit(IntervalOf{now, calendar}, period);
}

bool RunFilter::matches(const RunRecord& record, const Surroundings& dependencies) const {
    return RunMatcher(*this, dependencies).matches(record);
}

std::vector<RunRecord> RunFilter::apply(std::vector<RunRecord> records,
                                        const Surroundings& dependencies) const {
    const RunMatcher matcher(*this, dependencies);
    std::erase_if(records, [&](const RunRecord& record) { return !matcher.matches(record); });
    return records;
}

} // namespace vh
