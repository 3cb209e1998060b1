#include "Reports/ReportPdf.h"

#include "Core/Printable.h"
#include "Platform/Module.h"
#include "Reports/ReportSheet.h"

#include <unicode/ulocdata.h>

namespace vh::reports {

namespace {

/// Letter is the only other size that a locale asks for; in points it is whole where millimetres are not.
void setPaper(ReportSheet& sheet, std::string_view locale) {
    int32_t height = 0, width = 0;
    UErrorCode status = U_ZERO_ERROR;
    ulocdata_getPaperSize(std::string(locale).c_str(), &height, &width, &status);
    const bool isLetter = U_SUCCESS(status) && width > 210;
    sheet.width = isLetter ? 612 : 595.276;
    sheet.height = isLetter ? 792 : 841.89;
}

void makePrintable(std::string& text) {
    text = printable(text);
}

/// Facts may list things, one a line.
std::string printableLines(std::string_view text) {
    std::string lines;
    for (size_t start = 0; start <= text.size();) {
        const size_t end = std::min(text.find('\n', start), text.size());
        lines += (start > 0 ? "\n" : "") + printable(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

RunReportDocument printableReport(RunReportDocument report) {
    for (std::string* text : {&report.identity, &report.title, &report.meta})
        makePrintable(*text);
    for (auto& fact : report.facts)
        fact.value = printableLines(fact.value);
    for (auto& total : report.totals)
        makePrintable(total.value);
    for (auto& line : report.lines)
        std::ranges::for_each(line.cells, makePrintable);
    return report;
}

} // namespace

std::string pdfOf(const RunReportDocument& report, const Texts& texts, std::string_view locale) {
    ReportSheet sheet{.report = printableReport(report)};
    setPaper(sheet, locale);
    sheet.pageText = [&texts](size_t page, size_t pages) {
        return texts.text("report.page", {{"page", page}, {"pages", pages}});
    };
    return static_cast<ReportModule*>(openModule("report"))->draw(sheet);
}

} // namespace vh::reports
