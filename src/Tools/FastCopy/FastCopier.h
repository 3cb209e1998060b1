#pragma once

#include "Platform/CancelToken.h"
#include "Tools/FastCopy/CopyControl.h"
#include "Tools/FastCopy/CopyItems.h"
#include "Tools/FastCopy/CopyLanes.h"
#include "Tools/FastCopy/CopyOptions.h"
#include "Tools/FastCopy/CopyProgress.h"
#include "Tools/FastCopy/CopyReport.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vh::copy {

class CopyProofs;

/// Copies sources to several folders at once: each file is read once and written to all of them in step, and appears
/// under its name only when it is whole. One copy a copier; blocks.
class FastCopier {
public:
    explicit FastCopier(std::shared_ptr<CopyControl> control,
                        CopyLanes::Threads threads = CopyLanes::Threads::own)
        : control_(std::move(control)), threads_(threads) {}

    /// What a copy of these comes to. Throws CopyError (sourceMissing) or Cancelled.
    static CopyPlan plan(const std::vector<std::string>& sources, CopyLinks links = CopyLinks::leaveOut,
                         const CancelToken& cancel = {});

    /// Throws CopyError for what keeps it from beginning, or Cancelled while it looks what there is. `progress` is called
    /// on this thread. With `proofs` a verified copy takes up what an interrupted one had done, and notes what it does.
    CopyReport copy(const std::vector<std::string>& sources, const std::vector<std::string>& destinations,
                    const CopyOptions& options, const std::function<void(const CopyProgress&)>& progress = {},
                    const CancelToken& beforeBeginning = {}, CopyProofs* proofs = nullptr);
    void cancel() { control_->cancel(); }

private:
    std::shared_ptr<CopyControl> control_;
    CopyLanes::Threads threads_;
};

} // namespace vh::copy
