#pragma once

#include "Core/ErrorMessage.h"
#include "Tools/FastCopy/work/DiskCopy.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace vh::automation {

/// Why a disk is not imaged; message() says what to do.
class DiskCopyRefusal : public std::runtime_error, public SpeakingError {
public:
    explicit DiskCopyRefusal(Message why) : std::runtime_error(why.key), why_(std::move(why)) {}
    Message message() const override { return why_; }

private:
    Message why_;
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
