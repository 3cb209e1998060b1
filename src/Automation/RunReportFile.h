#pragma once

#include "Automation/AutomationDependencies.h"
#include "Core/Describe.h"
#include "Core/RunFiles.h"
#include "Core/RunRecord.h"

#include <string>
#include <vector>

namespace vh::automation {

enum class ReportFormat { pdf, csv };

/// A run's report as a file to keep or to send.
struct RunReportFile {
    std::string name; ///< "system-junk 2026-11-22 20.18.55 1B2C3D4E.pdf"
    std::string type; ///< MIME
    std::string bytes;
};

/// `rows` are the files that the run touched. Throws std::runtime_error when no PDF can be made. Any thread.
RunReportFile reportFileOf(const RunRecord& record, const std::vector<RunFileRow>& rows, ReportFormat format,
                           const Texts& texts, const LocalCalendar& calendar);

} // namespace vh::automation

namespace vh {
template <>
inline constexpr auto describe<automation::ReportFormat> = enumeration<automation::ReportFormat>(
    {{automation::ReportFormat::pdf, "pdf"}, {automation::ReportFormat::csv, "csv"}});
} // namespace vh
