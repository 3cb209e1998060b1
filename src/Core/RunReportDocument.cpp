#include "Core/RunReportDocument.h"

#include "Core/ByteFormat.h"
#include "Core/Csv.h"
#include "Core/Printable.h"
#include "Core/RunWords.h"
#include "Core/ToolTexts.h"

#include <algorithm>
#include <fmt/format.h>

namespace vh {

namespace {

/// A column of the file list: only those that some row fills are shown.
struct Column {
    std::string_view name;
    double weight;
    bool isNumeric;
    std::optional<std::string> (*cell)(const RunFileRow&, const Texts&);
};

constexpr Column columnTable[] = {
    {"path", 5, false,
     [](const RunFileRow& row, const Texts&) {
         return std::optional(printable(row.path));
     }},
    {"place", 4, false,
     [](const RunFileRow& row, const Texts&) {
         return row.place ? std::optional(printable(*row.place)) : std::nullopt;
     }},
    {"bytes", 1, true,
     [](const RunFileRow& row, const Texts& texts) {
         return row.bytes ? std::optional(sizeText(*row.bytes, texts.language())) : std::nullopt;
     }},
    {"state", 1.5, false,
     [](const RunFileRow& row, const Texts& texts) {
         const std::string key = "run-file.state." + row.state;
         return std::optional(texts.has(key) ? texts.text(key) : row.state);
     }},
    {"checksum", 3, false,
     [](const RunFileRow& row, const Texts&) {
         return row.checksum;
     }},
};

Tone toneOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::success:
        return Tone::good;
    case Outcome::failed:
        return Tone::bad;
    case Outcome::warning:
    case Outcome::cancelled:
        break;
    }
    return Tone::warn;
}

Tone toneOfState(std::string_view state) {
    if (state == "failed" || state == "deletedInPart" || state == "damaged" || state == "missing")
        return Tone::bad;
    if (state == "skipped" || state == "doing" || state == "unknown")
        return Tone::warn;
    return state == "verified" ? Tone::good : Tone::normal;
}

std::optional<std::string> markerOf(Tone tone) {
    if (tone == Tone::bad)
        return "✕";
    return tone == Tone::warn ? std::optional<std::string>("!") : std::nullopt;
}

std::string columnKey(std::string_view name) {
    return fmt::format("activity.column.{}", name);
}

class Builder {
public:
    Builder(const RunRecord& record, const Texts& texts) : record_(record), texts_(texts) {}

    void addFacts() {
        addFact("activity.column.outcome", texts_.text(fmt::format("outcome.{}", rawValue(record_.outcome))));
        addFact("activity.column.trigger", texts_.text(fmt::format("trigger.{}", rawValue(record_.trigger))));
        addFact("activity.heading.duration", durationText(record_.duration, texts_.language()));
        addFact("activity.column.summary", summaryOf(record_, texts_));
        for (const RunDetail detail : detailColumns({record_}, {RunDetail::files, RunDetail::bytes}))
            addFact(columnKey(rawValue(detail)), *detailOf(record_, detail, texts_));
    }

    void addTotals() {
        if (const auto files = record_.files())
            addTotal("activity.column.files", fmt::format("{}", *files), Tone::normal);
        if (const auto bytes = record_.bytes())
            addTotal("activity.heading.size", sizeText(*bytes, texts_.language()), Tone::normal);
        if (const auto errors = record_.metric(RunMetric::errors))
            addTotal("activity.column.errors", fmt::format("{:.0f}", *errors),
                     *errors > 0 ? Tone::bad : Tone::good);
    }

    void addLines(const std::vector<RunFileRow>& rows) {
        const auto shown = columnsOf(rows);
        double sum = 0;
        for (const Column* column : shown)
            sum += column->weight;
        for (const Column* column : shown) {
            if (column->isNumeric)
                document.numeric.insert(document.columns.size());
            document.columns.push_back(texts_.text(columnKey(column->name)));
            document.widths.push_back(column->weight / sum);
        }
        for (const auto& row : rows) {
            auto& line = document.lines.emplace_back();
            for (const Column* column : shown)
                line.cells.push_back(column->cell(row, texts_).value_or(""));
            line.tone = toneOfState(row.state);
            line.marker = markerOf(line.tone);
        }
    }

    RunReportDocument document;

private:
    void addFact(std::string_view key, std::string value) {
        document.facts.push_back({texts_.text(key), std::move(value)});
    }
    void addTotal(std::string_view key, std::string value, Tone tone) {
        document.totals.push_back({texts_.text(key), std::move(value), tone});
    }
    std::vector<const Column*> columnsOf(const std::vector<RunFileRow>& rows) const {
        std::vector<const Column*> shown;
        for (const Column& column : columnTable)
            if (std::ranges::any_of(
                    rows, [&](const RunFileRow& row) { return column.cell(row, texts_).has_value(); }))
                shown.push_back(&column);
        return shown;
    }

    const RunRecord& record_;
    const Texts& texts_;
};

} // namespace

size_t RunReportDocument::pages(size_t linesPerPage) const {
    const size_t fit = std::max<size_t>(linesPerPage, 1);
    return std::max<size_t>((lines.size() + fit - 1) / fit, 1);
}

RunReportDocument RunReportDocument::of(const RunRecord& record, const std::vector<RunFileRow>& rows,
                                        const Texts& texts, const LocalCalendar& calendar) {
    Builder builder(record, texts);
    RunReportDocument& document = builder.document;
    document.identity = record.id.text();
    document.title = toolName(texts, record.toolID);
    document.meta = timestamp(record.startedAt, calendar) + (record.computer ? " · " + *record.computer : "");
    document.tint = toneOf(record.outcome);
    builder.addFacts();
    builder.addTotals();
    builder.addLines(rows);
    return std::move(builder.document);
}

} // namespace vh
