#pragma once

#include "Core/JobControl.h"
#include "Core/ScanReport.h"
#include "Tools/SystemJunk/JunkGuard.h"
#include "Tools/SystemJunk/SystemJunkConfiguration.h"

#include <optional>
#include <string>

namespace vh::junk {

/// Removes selected items of a report, each guarded anew at the moment it goes, since the report may be old. Not for
/// sharing between threads.
class JunkCleaner {
public:
    explicit JunkCleaner(const SystemJunkConfiguration& configuration);

    /// A failing item is a line in the result. Throws JunkCleanerError for an empty selection. When stopped, gives
    /// what was done so far.
    CleanResult clean(const ScanReport& report, const CleanSelection& selection, const JobControl& control);

    /// Where the item landed in the Trash, nothing when it is gone for good. Throws PathAllowlistError,
    /// JunkCleanerError or SystemError, and then the item is still there.
    std::optional<std::string> remove(const ScanItem& item, RemovalMethod method);

private:
    bool isRoot(const std::string& path) const;

    const SystemJunkConfiguration& configuration_;
    JunkGuard guard_;
};

} // namespace vh::junk
