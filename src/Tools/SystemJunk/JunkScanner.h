#pragma once

#include "Core/JobControl.h"
#include "Core/ScanReport.h"
#include "Tools/SystemJunk/SystemJunkConfiguration.h"

#include <string>

namespace vh::junk {

/// Lists the entries directly under the roots, largest first.
class JunkScanner {
public:
    explicit JunkScanner(const SystemJunkConfiguration& configuration) : configuration_(configuration) {}

    /// A root that is missing or cannot be listed is left out. Throws Cancelled.
    ScanReport scan(std::string moduleID, const JobControl& control) const;

private:
    const SystemJunkConfiguration& configuration_;
};

} // namespace vh::junk
