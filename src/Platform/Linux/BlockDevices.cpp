#include "Platform/Linux/BlockDevices.h"

#include "Platform/Linux/BlockTree.h"
#include "Platform/Linux/VolumeChoice.h"
#include "Platform/PathParts.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <fmt/format.h>
#include <sys/sysmacros.h>

namespace vh {

namespace {

/// The names of the links in a folder of /dev/disk, by the device they lead to.
std::map<uint64_t, std::string> linkNames(const std::string& folder) {
    std::map<uint64_t, std::string> names;
    for (const std::string& name : namesIn(folder))
        if (const uint64_t device = blockDeviceAt(joinPath(folder, name)))
            names[device] = labelOfLinkName(name);
    return names;
}

/// "E:KEY=value", one a line.
std::optional<std::string> udevValue(std::string_view text, std::string_view key) {
    const std::string start = fmt::format("\nE:{}=", key);
    const size_t at = text.find(start);
    if (at == std::string_view::npos)
        return std::nullopt;
    text.remove_prefix(at + start.size());
    return labelOfLinkName(text.substr(0, text.find('\n')));
}

std::optional<std::string> found(const std::map<uint64_t, std::string>& names, uint64_t device) {
    const auto name = names.find(device);
    return name == names.end() ? std::nullopt : std::optional(name->second);
}

/// A step of a device's path in /sys at which it hangs on a plug: "usb3", the PCI devices behind Thunderbolt, a card.
bool isPlug(const std::string& folder) {
    const std::string name = splitPath(folder).name;
    const bool isBus = (name.starts_with("usb") || name.starts_with("fw")) &&
                       name.find_first_of("0123456789") != std::string::npos;
    const std::string removable = wordsIn(joinPath(folder, "removable"));
    return isBus || removable == "1" || removable == "removable" || wordsIn(joinPath(folder, "type")) == "SD";
}

} // namespace

BlockDevices::BlockDevices(std::string root)
    : root_(std::move(root)), uuids_(linkNames(root_ + "/dev/disk/by-uuid")),
      labels_(linkNames(root_ + "/dev/disk/by-label")) {}

bool BlockDevices::isInternal(const std::string& device, int depth) const {
    constexpr int deepest = 8; // encrypted, in a volume group, on a mirror…
    const std::string devices = realFolder(root_ + "/sys") + "/devices";
    const std::string slaves = joinPath(device, "slaves");
    if (!wordsIn(joinPath(device, "loop/backing_file")).empty())
        return false; // an image that somebody attached
    for (const std::string& name : namesIn(slaves))
        if (depth < deepest && !isInternal(realFolder(joinPath(slaves, name)), depth + 1))
            return false;
    for (std::string folder = device; folder.size() > devices.size(); folder = splitPath(folder).folder)
        if (isPlug(folder))
            return false;
    return true;
}

uint64_t BlockDevices::numberOf(const MountEntry& entry) const {
    const bool hasDevice = gnu_dev_major(entry.device) != 0;
    return hasDevice || !entry.source.starts_with("/dev/") ? entry.device
                                                           : blockDeviceAt(root_ + entry.source);
}

std::optional<std::string> BlockDevices::udev(uint64_t device, std::string_view key) const {
    const std::string file =
        fmt::format("{}/run/udev/data/b{}:{}", root_, gnu_dev_major(device), gnu_dev_minor(device));
    return udevValue("\n" + wordsIn(file), key);
}

BlockDevice BlockDevices::under(const MountEntry& entry) const {
    const uint64_t device = numberOf(entry);
    const std::string number = fmt::format("{}:{}", gnu_dev_major(device), gnu_dev_minor(device));
    BlockDevice facts{udev(device, "ID_FS_UUID_ENC"), udev(device, "ID_FS_LABEL_ENC"), true};
    if (!facts.uuid)
        facts.uuid = found(uuids_, device);
    if (!facts.label)
        facts.label = found(labels_, device);
    try {
        facts.isInternal = isInternal(realFolder(root_ + "/sys/dev/block/" + number), 0);
    } catch (const SystemError&) {
        facts.isInternal = true; // no /sys here
    }
    return facts;
}

} // namespace vh
