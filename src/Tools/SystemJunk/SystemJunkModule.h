#pragma once

#include "Core/SuiteModule.h"
#include "Tools/SystemJunk/JunkCleaner.h"
#include "Tools/SystemJunk/SystemJunkConfiguration.h"

#include <memory>
#include <mutex>

namespace vh::junk {

/// The tool "system-junk": lists what lies directly under the user's caches, logs and temporary folder, and removes
/// what is selected.
class SystemJunkModule final : public SuiteModule {
public:
    explicit SystemJunkModule(SystemJunkConfiguration configuration);

    ScanReport scan(const JobControl& control) override;
    /// Removes items of the last scan only, so that no path comes from outside. Throws JunkCleanerError; when stopped,
    /// gives what was done so far.
    CleanResult clean(const CleanSelection& selection, const JobControl& control) override;

private:
    const SystemJunkConfiguration configuration_;
    std::mutex cleaning_; ///< one clean at a time
    JunkCleaner cleaner_; ///< under cleaning_
    std::mutex lock_;
    std::shared_ptr<const ScanReport> lastReport_; ///< under lock_
};

} // namespace vh::junk
