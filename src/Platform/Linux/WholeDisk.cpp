#include "Platform/WholeDisk.h"

#include "Platform/Files.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Volumes.h"

#include <filesystem>
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

namespace fs = std::filesystem;

fs::path kernelFolderOf(uint64_t device) {
    return fmt::format("/sys/dev/block/{}:{}", major(device), minor(device));
}

std::vector<fs::path> entriesOf(const fs::path& folder) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
        entries.push_back(entry.path());
    return entries;
}

uint64_t deviceNumberIn(const fs::path& folder) {
    unsigned ofMajor = 0, ofMinor = 0;
    char colon = 0;
    std::istringstream(readFileIfPresent((folder / "dev").string()).value_or("")) >> ofMajor >> colon >>
        ofMinor;
    return makedev(ofMajor, ofMinor);
}

struct Part {
    uint64_t device;
    fs::path folder; ///< of the kernel
};

/// The disk itself and its partitions.
std::vector<Part> partsOf(uint64_t disk) {
    std::vector<Part> parts{{disk, kernelFolderOf(disk)}};
    for (const fs::path& entry : entriesOf(kernelFolderOf(disk)))
        if (std::error_code error; fs::exists(entry / "partition", error))
            parts.push_back({deviceNumberIn(entry), entry});
    return parts;
}

bool isSwappedTo(uint64_t device) {
    std::istringstream table(readFileIfPresent("/proc/swaps").value_or(""));
    for (std::string line; std::getline(table, line);) {
        struct stat status {};
        if (::stat(line.substr(0, line.find(' ')).c_str(), &status) == 0 && S_ISBLK(status.st_mode) &&
            status.st_rdev == device)
            return true;
    }
    return false;
}

void refuseWhatIsUsed(const std::string& device, uint64_t disk) {
    const std::vector<MountEntry> mounts = mountTable();
    for (const Part& part : partsOf(disk)) {
        const std::string name = part.device == disk ? device : "/dev/" + part.folder.filename().string();
        for (const MountEntry& mount : mounts)
            if (mount.device == part.device)
                throw std::runtime_error(fmt::format("{} is mounted at {}", name, mount.path));
        if (const auto users = entriesOf(part.folder / "holders"); !users.empty())
            throw std::runtime_error(
                fmt::format("{} is part of {}", name, users.front().filename().string()));
        if (isSwappedTo(part.device))
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
    if (std::error_code error; fs::exists(kernelFolderOf(status.st_rdev) / "partition", error))
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
