#pragma once

#include "Core/RunReportDocument.h"

#include <string>

namespace vh::reports {

/// The report as a PDF on A4 pages, or on letter pages where the locale ("en-US") uses them: title, facts, totals and
/// the table with its header on every page, each page numbered. Throws std::runtime_error. Any thread.
std::string pdfOf(const RunReportDocument& report, const Texts& texts, std::string_view locale);

} // namespace vh::reports
