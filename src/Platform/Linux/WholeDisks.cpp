#include "Platform/WholeDisks.h"

#include "Platform/Blank.h"
#include "Platform/Files.h"
#include "Platform/Host.h"
#include "Platform/Linux/BlockDevices.h"
#include "Platform/Linux/BlockTree.h"
#include "Platform/Linux/DiskList.h"
#include "Platform/OpenFiles.h"
#include "Platform/Posix/PathParts.h"
#include "Platform/Process.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>
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
    }

    std::vector<DiskFacts> disks() const {
        std::vector<DiskFacts> all;
        const std::string folder = devices_.root() + "/sys/block";
        for (const std::string& name : namesIn(folder))
            if (const BlockNode disk = blockNode(realFolder(joinPath(folder, name))); holdsMedium(disk))
                all.push_back(factsOf(disk));
        return all;
    }

private:
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
            if (devices_.numberOf(mount) != node.number)
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
};

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
    std::vector<MountEntry> table = mountTable();
    std::ranges::reverse(table); // what was mounted last goes first
    for (const MountEntry& entry : table)
        if (std::ranges::find(disk.mountPoints, entry.path) != disk.mountPoints.end())
            unmount(entry);
    for (const DiskFacts& now : wholeDisks())
        if (now.device == disk.device && now.isMounted)
            throw std::runtime_error(
                fmt::format("{} is still mounted at {}", disk.device, now.mountPoints.front()));
}

} // namespace vh
