#include "Core/ActivityExport.h"

#include "Core/Csv.h"
#include "Core/RunWords.h"
#include "Core/ToolTexts.h"

#include <fmt/format.h>

namespace vh {

namespace {

std::string number(std::optional<int64_t> value) {
    return value ? fmt::format("{}", *value) : "";
}

/// Seconds in the spelling that the locale's spreadsheets take for a number.
std::string seconds(double value, char separator) {
    std::string text = fmt::format("{:.1f}", value);
    if (separator == ';')
        text[text.find('.')] = ',';
    return text;
}

} // namespace

std::string ActivityExport::csv(const std::vector<RunRecord>& records) const {
    const char separator = csvSeparator(locale);
    const auto details = detailColumns(records, {RunDetail::files, RunDetail::bytes});
    std::vector<std::string> header;
    for (const auto column :
         {"date", "tool", "computer", "trigger", "outcome", "duration", "files", "bytes", "summary"})
        header.push_back(texts.text(fmt::format("activity.column.{}", column)));
    for (const RunDetail detail : details)
        header.push_back(texts.text(fmt::format("activity.column.{}", rawValue(detail))));

    std::vector<std::vector<std::string>> rows;
    for (const auto& record : records) {
        auto& row = rows.emplace_back(std::vector{
            timestamp(record.startedAt, calendar), toolName(texts, record.toolID),
            record.computer.value_or(""), texts.text(fmt::format("trigger.{}", rawValue(record.trigger))),
            texts.text(fmt::format("outcome.{}", rawValue(record.outcome))),
            seconds(record.duration, separator), number(record.files()), number(record.bytes()),
            summaryOf(record, texts)});
        for (const RunDetail detail : details)
            row.push_back(detailOf(record, detail, texts).value_or(""));
    }
    return vh::csv(header, rows, separator);
}

} // namespace vh
