#pragma once

#include "Core/RunReportDocument.h"

#include <functional>
#include <string>

namespace vh::reports {

/// A report ready to be drawn: all its texts are valid UTF-8. Lengths are points.
struct ReportSheet {
    RunReportDocument report;
    double width = 0;
    double height = 0;
    std::function<std::string(size_t page, size_t pages)> pageText; ///< pages count from 1
};

/// What the entry of the module "report" gives.
struct ReportModule {
    /// The PDF. Throws std::runtime_error.
    std::string (*draw)(const ReportSheet& sheet);
};

} // namespace vh::reports
