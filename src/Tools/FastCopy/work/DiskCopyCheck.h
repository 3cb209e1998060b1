#pragma once

#include "Tools/FastCopy/work/DiskCopy.h"

#include <stdexcept>
#include <string>

namespace vh::automation {

/// Why a disk is not imaged; what() is for people and says what to do.
class DiskCopyRefusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What is imaged, and where to.
struct DiskCopyPlan {
    DiskFacts disk; ///< as it is now
    std::string image;
};

/// Everything that can be known before anything is touched. Throws DiskCopyRefusal.
DiskCopyPlan planDiskCopy(const DiskCopyRequest& request, size_t first, const DeviceJobs& jobs,
                          const Folders& folders, Date now, const Texts& texts);

} // namespace vh::automation
