#pragma once

#include "Core/ScanReport.h"

#include <optional>
#include <string>
#include <vector>

namespace vh::cli {

/// What the words of `junk clean` select.
struct JunkWords {
    bool all = false;
    std::vector<std::string> categories;
    std::vector<std::string> paths; ///< absolute or below the working folder
    bool recent = false;            ///< also what was in use of late
};

struct JunkSelection {
    std::vector<ScanItem> items;        ///< in report order
    std::vector<std::string> unmatched; ///< words that select nothing
    size_t leftOut = 0; ///< that "all" or a category would name, had they not been in use of late
};

/// A path takes what it names; "all" and categories leave out what was in use of late unless told otherwise. Only items of the report can be selected, so a path can never bring in anything else. `folder` is the working one.
JunkSelection selectJunk(const ScanReport& report, const JunkWords& words, const std::string& folder);

} // namespace vh::cli
