#include "Tools/SystemJunk/SystemJunkModule.h"

#include "Tools/SystemJunk/JunkScanner.h"

namespace vh::junk {

SystemJunkModule::SystemJunkModule(SystemJunkConfiguration configuration)
    : SuiteModule(*moduleCard("system-junk")), configuration_(std::move(configuration)),
      cleaner_(configuration_) {}

ScanReport SystemJunkModule::scan(const JobControl& control) {
    auto report =
        std::make_shared<const ScanReport>(JunkScanner(configuration_).scan(std::string(id()), control));
    const std::lock_guard hold(lock_);
    lastReport_ = report;
    return *report;
}

CleanResult SystemJunkModule::clean(const CleanSelection& selection, const JobControl& control) {
    std::shared_ptr<const ScanReport> report;
    {
        const std::lock_guard hold(lock_);
        report = lastReport_;
    }
    if (!report)
        throw JunkCleanerError(JunkCleanerError::Kind::missingReport);
    const std::lock_guard hold(cleaning_);
    return cleaner_.clean(*report, selection, control);
}

} // namespace vh::junk
