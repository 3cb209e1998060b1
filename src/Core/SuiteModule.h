#pragma once

#include "Core/JobControl.h"
#include "Core/ModuleCards.h"
#include "Core/ScanReport.h"

#include <string_view>

namespace vh {

/// A tool module: its card, and for the tools that scan and clean, those two verbs. Modules are shared between
/// threads; each guards the little it remembers between a scan and the clean that follows, which must be asked of the
/// same object.
class SuiteModule {
public:
    explicit SuiteModule(const ModuleCard& card) : card_(card) {}
    virtual ~SuiteModule() = default;
    SuiteModule(const SuiteModule&) = delete;
    SuiteModule& operator=(const SuiteModule&) = delete;

    std::string_view id() const { return card_.id; }
    std::string_view displayName() const { return card_.displayName; }
    std::string_view sfSymbolName() const { return card_.sfSymbolName; }
    std::string_view summary() const { return card_.summary; }

    /// Both block and are called off the main thread. They throw Cancelled when stopped, and what keeps the whole job
    /// from being done; a single item's failure stands in the result. Unless overridden they find and remove nothing.
    virtual ScanReport scan(const JobControl& control);
    virtual CleanResult clean(const CleanSelection& selection, const JobControl& control);

private:
    const ModuleCard card_;
};

/// How the computer is doing, for the home page.
struct SystemHealthSnapshot {
    int diskUsagePercent = 0;
    int memoryUsagePercent = 0;
    int64_t estimatedJunkBytes = 0;
    bool isMock = false; ///< a sample made before the first real reading
};

template <>
inline constexpr auto describe<SystemHealthSnapshot> =
    record(field("diskUsagePercent", &SystemHealthSnapshot::diskUsagePercent),
           field("memoryUsagePercent", &SystemHealthSnapshot::memoryUsagePercent),
           field("estimatedJunkBytes", &SystemHealthSnapshot::estimatedJunkBytes),
           field("isMock", &SystemHealthSnapshot::isMock));

} // namespace vh
