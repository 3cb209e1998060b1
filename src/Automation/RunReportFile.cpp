#include "Automation/RunReportFile.h"

#include "Core/ActivityExport.h"
#include "Core/Csv.h"
#include "Core/Printable.h"
#include "Core/RunReportDocument.h"
#include "Reports/ReportPdf.h"

#include <algorithm>
#include <fmt/format.h>

namespace vh::automation {

namespace {

/// The table of what the run touched, or else its line in the activity.
std::string csvOf(const RunReportDocument& report, const RunRecord& record, const ActivityExport& activity) {
    if (report.lines.empty())
        return activity.csv({record});
    std::vector<std::vector<std::string>> rows;
    for (const auto& line : report.lines)
        rows.push_back(line.cells);
    return csv(report.columns, rows, csvSeparator(activity.locale));
}

/// "system-junk 2026-11-22 20.18.55 1B2C3D4E.pdf"
std::string fileName(const RunRecord& record, ReportFormat format, const LocalCalendar& calendar) {
    std::string time = timestamp(record.startedAt, calendar);
    std::ranges::replace(time, ':', '.');
    std::string tool = printable(record.toolID);
    std::ranges::replace(tool, '/', '-');
    return fmt::format("{} {} {}.{}", tool, time, record.id.text().substr(0, 8), rawValue(format));
}

} // namespace

RunReportFile reportFileOf(const RunRecord& record, const std::vector<RunFileRow>& rows, ReportFormat format,
                           const Texts& texts, const LocalCalendar& calendar) {
    const std::string locale(code(texts.language()));
    const auto document = RunReportDocument::of(record, rows, texts, calendar);
    const std::string name = fileName(record, format, calendar);
    if (format == ReportFormat::pdf)
        return {name, "application/pdf", reports::pdfOf(document, texts, locale)};
    return {name, "text/csv", csvOf(document, record, {texts, locale, calendar})};
}

} // namespace vh::automation
