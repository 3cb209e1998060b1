#include "Platform/WholeDisk.h"

#include "Platform/Files.h"
#include "Platform/Linux/BlockTree.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Volumes.h"

#include <fmt/format.h>
#include <linux/fs.h>
#include <sstream>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <vector>

namespace vh {

namespace {

std::string kernelFolderOf(uint64_t device) {
    return fmt::format("/sys/dev/block/{}:{}", major(device), minor(device));
}

bool isSwappedTo(uint64_t device) {
    std::istringstream table(readFileIfPresent("/proc/swaps").value_or(""));
    for (std::string line; std::getline(table, line);)
        if (blockDeviceAt(line.substr(0, line.find_first_of(" \t"))) == device)
            return true;
    return false;
}

void refuseWhatIsUsed(const std::string& device, uint64_t disk) {
    const std::vector<MountEntry> mounts = mountTable();
    for (const BlockNode& part : partsOf(blockNode(kernelFolderOf(disk)))) {
        const std::string name = part.number == disk ? device : "/dev/" + part.name;
        for (const MountEntry& mount : mounts)
            if (mount.device == part.number)
                throw std::runtime_error(fmt::format("{} is mounted at {}", name, mount.path));
        if (const auto users = namesIn(joinPath(part.folder, "holders")); !users.empty())
            throw std::runtime_error(fmt::format("{} is part of {}", name, users.front()));
        if (isSwappedTo(part.number))
            throw std::runtime_error(name + " is used as swap space");
    }
}

/// While it is open like this, the kernel lets nobody mount it or build upon it.
FileDescriptor claim(const FileDescriptor& node, const std::string& device) {
    const std::string same = fmt::format("/proc/self/fd/{}", node.get());
    FileDescriptor file = openAt(AT_FDCWD, same, O_RDONLY | O_EXCL | O_NONBLOCK);
    if (!file)
        throwErrno(device);
    return file;
}

} // namespace

WholeDisk::WholeDisk(const std::string& device) : device_(device) {
    // Only looked at before it is known to be a disk: some devices begin to work when they are opened.
    const FileDescriptor node = openPath(device, O_PATH | O_NOFOLLOW);
    const struct stat status = statusOfOpen(node, device);
    if (!S_ISBLK(status.st_mode))
        throw std::runtime_error(device + " is not a disk");
    if (!wordsIn(joinPath(kernelFolderOf(status.st_rdev), "partition")).empty())
        throw std::runtime_error(device + " is a part of a disk");
    refuseWhatIsUsed(device, status.st_rdev);
    file_ = std::make_unique<FileDescriptor>(claim(node, device));
    uint64_t bytes = 0;
    if (::ioctl(file_->get(), BLKGETSIZE64, &bytes) != 0)
        throwErrno(device);
    bytes_ = static_cast<int64_t>(bytes);
    if (bytes_ == 0)
        throw std::runtime_error(device + " holds no medium");
    ::posix_fadvise(file_->get(), 0, 0, POSIX_FADV_SEQUENTIAL);
}

WholeDisk::~WholeDisk() = default;

size_t WholeDisk::readAt(int64_t offset, std::span<char> block) const {
    return vh::readAt(*file_, offset, block, device_);
}

void WholeDisk::forgetUpTo(int64_t offset) const {
    if (offset > 0) // 0 would be all of it
        ::posix_fadvise(file_->get(), 0, offset, POSIX_FADV_DONTNEED);
}

} // namespace vh
