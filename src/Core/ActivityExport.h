#pragma once

#include "Core/LocalCalendar.h"
#include "Core/RunRecord.h"
#include "Core/Texts.h"

#include <string>
#include <vector>

namespace vh {

/// The activity list for a spreadsheet.
struct ActivityExport {
    Texts texts;
    std::string locale; ///< such as "es-ES", for the separator
    LocalCalendar calendar;

    /// A header and one row a record in their order; the details that occur follow the fixed columns.
    std::string csv(const std::vector<RunRecord>& records) const;
};

} // namespace vh
