#pragma once

#include "Core/LocalCalendar.h"
#include "Core/RunFiles.h"
#include "Core/RunRecord.h"
#include "Core/Texts.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vh {

/// How something in a report is meant; the view gives it its colour.
enum class Tone { normal, good, warn, bad };

/// A run in the form in which it is printed, without its layout.
struct RunReportDocument {
    struct Fact {
        std::string label;
        std::string value;
    };
    struct Total {
        std::string label;
        std::string value;
        Tone tone = Tone::normal;
    };
    struct Line {
        std::vector<std::string> cells;
        Tone tone = Tone::normal;
        std::optional<std::string> marker; ///< stands before a line that went wrong
    };

    std::string identity; ///< the run's identifier
    std::string title;    ///< the tool's name
    std::string meta;     ///< when and where, in one line
    Tone tint = Tone::normal;
    std::vector<Fact> facts;
    std::vector<Total> totals;
    std::vector<std::string> columns;
    std::set<size_t> numeric; ///< columns set right-aligned
    std::vector<Line> lines;
    std::vector<double> widths; ///< share of the page's width a column, together 1

    /// How many pages the lines fill; a report without lines fills one.
    size_t pages(size_t linesPerPage) const;

    static RunReportDocument of(const RunRecord& record, const std::vector<RunFileRow>& rows,
                                const Texts& texts, const LocalCalendar& calendar);
};

} // namespace vh
