#pragma once

#include "Core/JobControl.h"
#include "Core/LocalCalendar.h"
#include "Core/RunRecord.h"
#include "HelperKit/DeviceJob.h"
#include "Platform/Folders.h"
#include "Tools/FastCopy/CopySource.h"
#include "Tools/FastCopy/CopyWork.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace vh::helper {
class HelperClient;
}

namespace vh::automation {

/// A whole disk that is to become an image in the first destination and a copy of it in the others.
struct DiskCopyRequest {
    copy::RescueDisk disk;
    std::vector<std::string> destinations; ///< absolute folders
    copy::CopyOptions options;             ///< for the further destinations
    bool unmount = false;                  ///< first, where it is mounted
    Trigger trigger = Trigger::manual;
};

struct DiskCopyResult {
    enum class End { imaged, stopped, failed };
    End end = End::failed;
    RunRecord record;
    std::string imagePath;
    int64_t badBlocks = 0;
    std::string sha256;
    std::string error;                       ///< for people, when it failed
    std::optional<copy::CopyReport> further; ///< of the copies of the image
};

struct DiskCopyProgress {
    helper::DeviceJobStatus image;
    std::optional<copy::CopyProgress> further; ///< once the image is being copied
};

/// What is needed of the root helper.
struct DeviceJobs {
    std::function<std::string(const helper::DeviceJobSpec&)> start;
    std::function<helper::DeviceJobStatus(const std::string& id)> status;
    std::function<bool(const std::string& id)> cancel;
    static DeviceJobs of(helper::HelperClient& client);
};

/// "<name>-<yyyyMMdd-HHmm>.img", with blanks and slashes of the name as "-".
std::string imageNameOf(const copy::RescueDisk& disk, Date now, const LocalCalendar& calendar);

/// Images through the root helper, writes the image's hash beside it, copies both to the further destinations, and
/// leaves one run record. What keeps it from beginning is said with what to do about it. Never throws. Blocks; any thread.
DiskCopyResult runDiskCopy(const DiskCopyRequest& request, const DeviceJobs& jobs, const Folders& folders,
                           const RunStores& runs, const Texts& texts,
                           const std::shared_ptr<copy::CopyControl>& control,
                           const std::function<void(const DiskCopyProgress&)>& progress,
                           const CancelToken& cancel);

} // namespace vh::automation
