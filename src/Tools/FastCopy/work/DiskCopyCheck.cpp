#include "Tools/FastCopy/work/DiskCopyCheck.h"

#include "Core/Printable.h"
#include "Core/Texts.h"
#include "HelperKit/ImagePath.h"
#include "HelperKit/MaintenanceTable.h"
#include "Platform/CopyFolder.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"
#include "Platform/Volumes.h"
#include "Tools/FastCopy/CopyError.h"
#include "Tools/FastCopy/HashSidecar.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>

namespace vh::automation {

namespace {

namespace fs = std::filesystem;

/// The checks of one request.
class Check {
public:
    Check(const DiskCopyRequest& request, const DeviceJobs& jobs, const Folders& folders)
        : request_(request), jobs_(jobs), folders_(folders) {}

    DiskFacts disk() const {
        const auto disks = jobs_.disks();
        const auto found = std::ranges::find(disks, request_.disk.bsdName, &DiskFacts::bsdName);
        if (found == disks.end())
            refuse("fast-copy.disk-missing", {{"disk", printable(request_.disk.name)}});
        const std::string name = titleOf(*found);
        if (found->holdsSystem)
            refuse("fast-copy.disk-holds-system", {{"disk", name}});
        if (!found->users.empty())
            refuse("fast-copy.disk-in-use",
                   {{"disk", name}, {"users", fmt::format("{}", fmt::join(found->users, ", "))}});
        if (found->isMounted && !request_.unmount)
            refuse("fast-copy.disk-mounted",
                   {{"disk", name}, {"path", printable(found->mountPoints.front())}});
        return *found;
    }

    /// The path of the image, which lies where no link leads to.
    std::string image(const DiskFacts& disk, size_t first, Date now) const {
        for (const std::string& destination : request_.destinations)
            refuseDestination(destination, disk);
        const fs::path folder = fs::canonical(request_.destinations[first]);
        const std::string path = (folder / imageNameOf(request_.disk, now, LocalCalendar())).string();
        if (!helper::isImagePath(path, fs::weakly_canonical(folders_.home).string(), helper::thisSystem()))
            refuse("fast-copy.disk-destination-not-allowed", {{"path", printable(folder.string())}});
        for (const std::string& each : {path, copy::sidecarOf(path)})
            if (statusOf(each))
                refuse("fast-copy.disk-destination-exists", {{"path", printable(each)}});
        const int64_t free = CopyFolder(folder.string()).freeBytes();
        if (free < disk.bytes)
            refuse("fast-copy.not-enough-space", {{"path", printable(folder.string())},
                                                  {"free", ByteCount{free}},
                                                  {"needed", ByteCount{disk.bytes}}});
        return path;
    }

private:
    void refuseDestination(const std::string& destination, const DiskFacts& disk) const {
        std::error_code error;
        if (!fs::is_directory(destination, error))
            throw DiskCopyRefusal(copy::CopyError::destinationMissing(destination).message());
        if (disk.isMounted &&
            std::ranges::find(disk.mountPoints, mountPointOf(destination)) != disk.mountPoints.end())
            refuse("fast-copy.disk-destination-on-disk",
                   {{"disk", titleOf(disk)}, {"path", printable(destination)}});
    }
    static std::string titleOf(const DiskFacts& disk) {
        return fmt::format("{} ({})", printable(disk.name), disk.device);
    }
    [[noreturn]] static void refuse(const char* key, std::map<std::string, MessageArgument> arguments) {
        throw DiskCopyRefusal({key, std::move(arguments)});
    }

    const DiskCopyRequest& request_;
    const DeviceJobs& jobs_;
    const Folders& folders_;
};

} // namespace

DiskCopyPlan planDiskCopy(const DiskCopyRequest& request, size_t first, const DeviceJobs& jobs,
                          const Folders& folders, Date now, const Texts& texts) {
    if (const std::string missing = jobs.blocker(texts); !missing.empty())
        throw DiskCopyRefusal(Message::literal(missing));
    const Check check(request, jobs, folders);
    try {
        DiskFacts disk = check.disk();
        std::string image = check.image(disk, first, now);
        return {std::move(disk), std::move(image)};
    } catch (const SystemError& error) {
        throw DiskCopyRefusal(messageOf(error));
    } catch (const fs::filesystem_error& error) {
        throw DiskCopyRefusal(messageOf(error));
    }
}

} // namespace vh::automation
