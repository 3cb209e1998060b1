#pragma once

#include "Core/Describe.h"
#include "Core/LocalCalendar.h"
#include "Core/RunRecord.h"
#include "Core/Texts.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vh {

struct LastDays {
    int days = 7; ///< today counts as one; below 1 means 1
    bool operator==(const LastDays&) const = default;
};
struct DayRange {
    Date from; ///< both days belong to it, in either order
    Date to;
    bool operator==(const DayRange&) const = default;
};
struct AnyTime {
    bool operator==(const AnyTime&) const = default;
};
struct Today {
    bool operator==(const Today&) const = default;
};
struct Yesterday {
    bool operator==(const Yesterday&) const = default;
};
using Period = std::variant<LastDays, DayRange, AnyTime, Today, Yesterday>;

template <>
inline constexpr auto describe<LastDays> = record(field("_0", &LastDays::days));
template <>
inline constexpr auto describe<DayRange> = record(field("from", &DayRange::from), field("to", &DayRange::to));
template <>
inline constexpr auto describe<Period> = taggedUnion(unionCase<LastDays>("lastDays"),
                                                     unionCase<DayRange>("range"), unionCase<AnyTime>("all"),
                                                     unionCase<Today>("today"),
                                                     unionCase<Yesterday>("yesterday"));

/// From `from` up to, but not including, `to`.
struct DateInterval {
    Date from;
    Date to;
    bool contains(Date date) const { return from <= date && date < to; }
    bool operator==(const DateInterval&) const = default;
};

/// Which runs to show. Unset means any.
struct RunFilter {
    std::optional<std::string> toolID;
    Period period = AnyTime{};
    std::optional<Outcome> outcome;
    std::optional<std::string> computer;
    std::optional<Trigger> trigger;
    std::string text; ///< sought in the tool's name, the summary and the computer, without regard to case

    /// What a filter must know besides the run.
    struct Surroundings {
        std::function<std::string(const std::string& toolID)> toolName;
        std::string thisComputer; ///< what a record without a computer counts as
        Date now;
        LocalCalendar calendar;
        std::optional<Texts> texts = {}; ///< in which the summary is shown; unset: as it was written
    };

    /// Nothing for all time.
    std::optional<DateInterval> interval(Date now, const LocalCalendar& calendar) const;
    bool matches(const RunRecord& record, const Surroundings& dependencies) const;
    /// Those that match, in their order.
    std::vector<RunRecord> apply(std::vector<RunRecord> records, const Surroundings& dependencies) const;

    bool operator==(const RunFilter&) const = default;
};

/// A filter for many records, with all that is the same for each of them worked out once. One thread.
class RunMatcher {
public:
    RunMatcher(RunFilter filter, RunFilter::Surroundings dependencies);

    bool matches(const RunRecord& record) const;
    /// False when the record of this line of a log matches for certain not; much faster than reading it.
    bool mayMatch(std::string_view line) const;

private:
    const std::string& computerOf(const RunRecord& record) const;
    bool holdsText(const RunRecord& record) const;
    bool summaryHoldsText(const RunRecord& record) const;
    bool nameHoldsText(std::string_view toolID) const;

    const RunFilter filter_;
    const RunFilter::Surroundings dependencies_;
    const std::optional<DateInterval> interval_;
    const std::string needle_;         ///< folded
    const bool isPlainNeedle_ = false; ///< stands in a line as it is, whatever the case of its letters
    const std::string ownFacts_;       ///< how the facts of a record of this language begin in a line
    const bool isOfThisComputer_ = false;
    mutable std::map<std::string, bool, std::less<>> names_; ///< whether the names of tools hold the text
};

template <>
inline constexpr auto
    describe<RunFilter> = record(field("toolID", &RunFilter::toolID), field("period", &RunFilter::period),
                                 field("outcome", &RunFilter::outcome),
                                 field("computer", &RunFilter::computer),
                                 field("trigger", &RunFilter::trigger), field("text", &RunFilter::text));

} // namespace vh
