#include "Platform/WholeDisks.h"

#include "Platform/Blank.h"
#include "Platform/Files.h"
#include "Platform/Host.h"
#include "Platform/Linux/BlockDevices.h"
#include "Platform/Linux/BlockTree.h"
#include "Platform/Linux/DiskList.h"
#include "Platform/OpenFiles.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/MountOfFolder.h"
#include "Platform/Process.h"

#include <algorithm>
#include <charconv>
#include <fcntl.h>
#include <fmt/format.h>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

namespace vh {

namespace {

constexpr int64_t sectorBytes = 512; ///< in which /sys counts, whatever the disk's own are
/// Whoever unmounts may first ask for a password, and then write what is still in memory.
constexpr std::chrono::minutes unmountLimit{10};

int64_t bytesOf(const std::string& folder) {
    const std::string text = wordsIn(joinPath(folder, "size"));
    int64_t sectors = 0;
    std::from_chars(text.data(), text.data() + text.size(), sectors);
    return sectors * sectorBytes;
}

/// Whether it is made of something else: memory, other disks, a corner of a chip that is no place for files.
bool isMadeUp(const std::string& name) {
    constexpr std::string_view prefixes[]{"ram", "zram", "dm-", "md", "fd", "mtdblock"};
    return std::ranges::any_of(prefixes, [&](std::string_view each) { return name.starts_with(each); }) ||
           (name.starts_with("mmcblk") && name.find_first_of("br", 6) != std::string::npos);
}

std::string joined(const std::string& vendor, const std::string& model) {
    return vendor.empty() || model.starts_with(vendor) ? model : std::string(trimmed(vendor + " " + model));
}

/// The disks of one machine at one moment.
class DiskSurvey {
public:
    DiskSurvey(const BlockDevices& devices, const std::vector<MountEntry>& mounts)
        : devices_(devices), mounts_(mounts) {
        std::istringstream table(wordsIn(devices.root() + "/proc/swaps"));
        for (std::string line; std::getline(table, line);)
            if (line.starts_with('/'))
                swaps_.insert(blockDeviceAt(devices.root() + line.substr(0, line.find_first_of(" \t"))));
        readGroups();
    }

    std::vector<DiskFacts> disks() const {
        std::vector<DiskFacts> all;
        for (const std::string& name : namesIn(folderOfDisks()))
            if (const BlockNode disk = diskCalled(name); holdsMedium(disk))
                all.push_back(factsOf(disk));
        return all;
    }

    std::vector<MountEntry> mountsOf(const std::string& name) const {
        std::set<uint64_t> numbers;
        for (const BlockNode& part : partsOf(diskCalled(name))) {
            numbers.insert(fileSystemOn(part.number));
            for (const BlockNode& user : usersOf(part))
                numbers.insert(fileSystemOn(user.number));
        }
        std::vector<MountEntry> found;
        std::ranges::copy_if(mounts_, std::back_inserter(found), [&](const MountEntry& mount) {
            return numbers.contains(fileSystemOn(devices_.numberOf(mount)));
        });
        return found;
    }

private:
    std::string folderOfDisks() const { return devices_.root() + "/sys/block"; }
    BlockNode diskCalled(const std::string& name) const {
        return blockNode(realFolder(joinPath(folderOfDisks(), name)));
    }

    /// A file system of several devices is mounted by the name of one; all of them are in use then.
    void readGroups() {
        const std::string folder = devices_.root() + "/sys/fs/btrfs";
        for (const std::string& group : namesIn(folder)) {
            const std::string members = joinPath(joinPath(folder, group), "devices");
            uint64_t first = 0;
            for (const std::string& name : namesIn(members)) {
                const uint64_t number = blockNode(realFolder(joinPath(members, name))).number;
                groups_[number] = first = first == 0 ? number : first;
            }
        }
    }
    /// The number of the device that stands for the file system on this one.
    uint64_t fileSystemOn(uint64_t device) const {
        const auto group = groups_.find(device);
        return group == groups_.end() ? device : group->second;
    }

    bool holdsMedium(const BlockNode& disk) const {
        if (isMadeUp(disk.name) || bytesOf(disk.folder) == 0 ||
            wordsIn(joinPath(disk.folder, "hidden")) == "1")
            return false;
        if (disk.name.starts_with("sr")) // says a size without a disc too
            return devices_.udev(disk.number, "ID_CDROM_MEDIA") == "1";
        return !disk.name.starts_with("loop") || !wordsIn(joinPath(disk.folder, "loop/backing_file")).empty();
    }

    DiskFacts factsOf(const BlockNode& disk) const {
        DiskFacts facts{disk.name,    "/dev/" + disk.name,
                        nameOf(disk), bytesOf(disk.folder),
                        false,        !devices_.isInternal(disk.folder)};
        for (const BlockNode& part : partsOf(disk)) {
            if (part.number != disk.number)
                facts.parts.push_back("/dev/" + part.name);
            addUse(part, facts);
            for (const BlockNode& user : usersOf(part)) {
                facts.users.push_back(user.name);
                addUse(user, facts);
            }
        }
        std::ranges::sort(facts.users);
        facts.users.erase(std::unique(facts.users.begin(), facts.users.end()), facts.users.end());
        return facts;
    }

    void addUse(const BlockNode& node, DiskFacts& facts) const {
        if (swaps_.contains(node.number))
            facts.users.emplace_back("swap");
        for (const MountEntry& mount : mounts_) {
            if (fileSystemOn(devices_.numberOf(mount)) != fileSystemOn(node.number))
                continue;
            facts.isMounted = true;
            facts.mountPoints.push_back(mount.path);
            facts.holdsSystem |= isSystems(mount.path);
        }
    }

    static bool isSystems(const std::string& path) {
        return path == "/" || path == "/usr" || path == "/efi" || (path + '/').starts_with("/boot/");
    }

    std::string nameOf(const BlockNode& disk) const {
        const auto noted = [&](const char* key) {
            return std::string(trimmed(devices_.udev(disk.number, key).value_or("")));
        };
        const auto told = [&](const char* file) {
            const std::string text = wordsIn(joinPath(disk.folder, file));
            return text.starts_with("0x") || text == "ATA" ? std::string() : text; // numbers and buses
        };
        for (std::string name :
             {joined(noted("ID_VENDOR_ENC"), noted("ID_MODEL_ENC")), noted("ID_NAME"),
              joined(told("device/vendor"), told("device/model")), told("device/name"), labelOn(disk)})
            if (!name.empty())
                return name;
        return disk.name;
    }

    /// Of the first of its file systems that has one.
    std::string labelOn(const BlockNode& disk) const {
        for (const BlockNode& part : partsOf(disk))
            if (const auto label = devices_.udev(part.number, "ID_FS_LABEL_ENC"); label && !label->empty())
                return *label;
        return {};
    }

    const BlockDevices& devices_;
    const std::vector<MountEntry>& mounts_;
    std::set<uint64_t> swaps_;
    std::map<uint64_t, uint64_t> groups_; ///< the first member, by every member of a file system
};

/// Its path may lead to what somebody mounted over it since.
bool isOnTop(const MountEntry& entry) {
    const FileDescriptor folder = openPath(entry.path, O_PATH | O_NOFOLLOW);
    const uint64_t mount = mountOfFolder(folder.get(), statusOfOpen(folder, entry.path));
    return mount == entry.id || mount == entry.device;
}

void unmount(const MountEntry& entry) {
    const auto words = unmountCommand(entry, isAdministrator(), findProgram("udisksctl").has_value());
    const ProcessResult result =
        runProcess({.arguments = words, .output = ProcessOutput::combined, .timeLimit = unmountLimit});
    if (result.succeeded())
        return;
    const auto inUse = childrenInUse(entry.path);
    throw std::runtime_error(fmt::format("{}: {}{}", entry.path, trimmed(result.output),
                                         inUse.empty() ? "" : fmt::format(" ({})", fmt::join(inUse, ", "))));
}

} // namespace

std::vector<DiskFacts> disksAmong(const BlockDevices& devices, const std::vector<MountEntry>& mounts) {
    return DiskSurvey(devices, mounts).disks();
}

std::vector<MountEntry> mountsOf(const std::string& bsdName, const BlockDevices& devices,
                                 const std::vector<MountEntry>& mounts) {
    return DiskSurvey(devices, mounts).mountsOf(bsdName);
}

std::vector<DiskFacts> wholeDisks() {
    return disksAmong(BlockDevices(), mountTable());
}

std::vector<std::string> unmountCommand(const MountEntry& entry, bool isAdministrator, bool hasService) {
    if (const std::string device = devicePathOf(entry); !isAdministrator && hasService && !device.empty())
        return {"udisksctl", "unmount", "--block-device", device};
    return {"umount", "--", entry.path};
}

void unmountDisk(const DiskFacts& disk) {
    if (disk.holdsSystem)
        throw std::runtime_error(disk.device + " holds the running system");
    std::vector<MountEntry> mounts = mountsOf(disk.bsdName, BlockDevices(), mountTable());
    std::ranges::reverse(mounts); // what was mounted last goes first
    for (const MountEntry& entry : mounts) {
        if (!isOnTop(entry))
            throw std::runtime_error(
                fmt::format("{}: something else is mounted over it; unmount that first", entry.path));
        unmount(entry);
    }
    for (const DiskFacts& now : wholeDisks())
        if (now.device == disk.device && now.isMounted)
            throw std::runtime_error(
                fmt::format("{} is still mounted at {}", disk.device, now.mountPoints.front()));
}

} // namespace vh
