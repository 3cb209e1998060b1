#pragma once

#include "Core/LocalCalendar.h"
#include "Core/RunRecord.h"
#include "HelperKit/DeviceJob.h"
#include "Platform/CancelToken.h"
#include "Platform/Folders.h"
#include "Platform/WholeDisks.h"
#include "Tools/FastCopy/CopySource.h"
#include "Tools/FastCopy/CopyWork.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
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
    End end = End::failed; ///< imaged also when copying the image on was stopped or failed
    RunRecord record;
    std::string message;   ///< what came of it, for people; why, when it failed
    std::string imagePath; ///< empty when nothing was begun
    int64_t badBlocks = 0;
    std::string sha256;         ///< of the image
    std::string sidecarFailure; ///< why there is no hash beside it, for people; else empty
    std::optional<copy::CopyReport>
        further; ///< of copying the image on; the image's own place counts as written
};

struct DiskCopyProgress {
    helper::DeviceJobStatus image;
    std::optional<copy::CopyProgress> further; ///< once the image is being copied
};

/// What imaging needs of the root helper and of the machine.
struct DeviceJobs {
    /// Why no job can be run here, for people; empty when it can.
    std::function<std::string(const Texts&)> blocker;
    std::function<std::string(const helper::DeviceJobSpec&)> start;
    std::function<helper::DeviceJobStatus(const std::string& id)> status;
    std::function<bool(const std::string& id)> cancel;
    std::function<std::vector<DiskFacts>()> disks = wholeDisks;
    std::function<void(const DiskFacts&)> unmount = unmountDisk;
    std::chrono::milliseconds interval{300}; ///< between two questions for the status

    /// Through the helper, which outlives this; but a process that is the administrator's own does the work itself.
    static DeviceJobs of(helper::HelperClient& client);
    static DeviceJobs throughHelper(helper::HelperClient& client);
    static DeviceJobs ofThisProcess();
};

/// What a copy takes of a disk.
copy::RescueDisk sourceOf(const DiskFacts& disk);

/// "<name>-<yyyyMMdd-HHmm>.img", with blanks and slashes of the name as "-".
std::string imageNameOf(const copy::RescueDisk& disk, Date now, const LocalCalendar& calendar);

/// Images the disk as a device job, writes the image's hash beside it, copies both to the further destinations, and
/// leaves one run record. What keeps it from beginning is said with what to do about it. The destinations' numbers in
/// `control` are those of the request; taking the first out stops it while it is imaged, and pausing waits for the
/// copies. Never throws. Blocks; any thread.
DiskCopyResult runDiskCopy(const DiskCopyRequest& request, const DeviceJobs& jobs, const Folders& folders,
                           const RunStores& runs, const Texts& texts,
                           const std::shared_ptr<copy::CopyControl>& control,
                           const std::function<void(const DiskCopyProgress&)>& progress = {},
                           const CancelToken& cancel = {});

} // namespace vh::automation
