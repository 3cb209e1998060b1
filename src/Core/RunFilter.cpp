#include "Core/RunFilter.h"

#include "Core/Fold.h"
#include "Core/RunWords.h"

#include <algorithm>
#include <unordered_map>

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

/// A filter with all that is the same for every record worked out once.
class Matcher {
public:
    Matcher(const RunFilter& filter, const RunFilter::Surroundings& world)
        : filter_(filter), world_(world), interval_(filter.interval(world.now, world.calendar)),
          needle_(foldForSearch(filter.text)) {}

    bool matches(const RunRecord& record) {
        return (!interval_ || interval_->contains(record.startedAt)) &&
               isWanted(filter_.toolID, record.toolID) && isWanted(filter_.outcome, record.outcome) &&
               isWanted(filter_.trigger, record.trigger) && isWanted(filter_.computer, computerOf(record)) &&
               (needle_.empty() || holdsText(record));
    }

private:
    const std::string& computerOf(const RunRecord& record) const {
        return record.computer ? *record.computer : world_.thisComputer;
    }
    bool holdsText(const RunRecord& record) {
        return nameHoldsText(record.toolID) || summaryHoldsText(record) ||
               containsFolded(computerOf(record), needle_);
    }
    bool summaryHoldsText(const RunRecord& record) const {
        if (!world_.texts || !record.facts)
            return containsFolded(record.summary, needle_);
        return containsFolded(summaryOf(record, *world_.texts), needle_);
    }
    bool nameHoldsText(const std::string& toolID) {
        const auto [place, isNew] = names_.try_emplace(toolID);
        if (isNew)
            place->second = containsFolded(world_.toolName ? world_.toolName(toolID) : toolID, needle_);
        return place->second;
    }

    const RunFilter& filter_;
    const RunFilter::Surroundings& world_;
    std::optional<DateInterval> interval_;
    std::string needle_;
    std::unordered_map<std::string, bool> names_;
};

} // namespace

std::optional<DateInterval> RunFilter::interval(Date now, const LocalCalendar& calendar) const {
    return std::visit(IntervalOf{now, calendar}, period);
}

bool RunFilter::matches(const RunRecord& record, const Surroundings& world) const {
    return Matcher(*this, world).matches(record);
}

std::vector<RunRecord> RunFilter::apply(std::vector<RunRecord> records, const Surroundings& world) const {
    Matcher matcher(*this, world);
    std::erase_if(records, [&](const RunRecord& record) { return !matcher.matches(record); });
    return records;
}

} // namespace vh
