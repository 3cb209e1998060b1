#include "Platform/Posix/DiskUtility.h"

#include "Platform/Blank.h"

#include <algorithm>
#include <simdjson.h>

namespace vh::diskUtility {

namespace {

using simdjson::dom::array;
using simdjson::dom::element;

std::string textOf(const element& object, const char* key) {
    std::string_view text;
    return object[key].get(text) == simdjson::SUCCESS ? std::string(trimmed(text)) : std::string();
}

bool holds(const element& object, const char* key) {
    bool value = false;
    return object[key].get(value) == simdjson::SUCCESS && value;
}

template <class Visit>
void forEach(const element& object, const char* key, Visit visit) {
    array members;
    if (object[key].get(members) == simdjson::SUCCESS)
        for (const element member : members)
            visit(member);
}

bool isSystems(const std::string& path) {
    return path == "/" || path.starts_with("/System/Volumes/");
}

void addMounts(const element& volume, DiskFacts& facts) {
    const auto add = [&](const std::string& path) {
        if (path.empty())
            return;
        facts.isMounted = true;
        facts.holdsSystem |= isSystems(path);
        if (std::ranges::find(facts.mountPoints, path) == facts.mountPoints.end())
            facts.mountPoints.push_back(path);
    };
    add(textOf(volume, "MountPoint"));
    // The system itself runs from a snapshot.
    forEach(volume, "MountedSnapshots",
            [&](const element& snapshot) { add(textOf(snapshot, "SnapshotMountPoint")); });
}

/// What lies on a disk: its partitions, or the volumes of a container.
void addContents(const element& disk, DiskFacts& facts) {
    addMounts(disk, facts);
    for (const char* key : {"Partitions", "APFSVolumes"})
        forEach(disk, key, [&](const element& part) { addMounts(part, facts); });
}

DiskFacts factsOf(const element& disk, const std::string& infoJson) {
    DiskFacts facts;
    facts.bsdName = textOf(disk, "DeviceIdentifier");
    facts.device = "/dev/" + facts.bsdName;
    int64_t bytes = 0;
    if (disk["Size"].get(bytes) == simdjson::SUCCESS)
        facts.bytes = bytes;
    forEach(disk, "Partitions", [&](const element& part) {
        facts.parts.push_back("/dev/" + textOf(part, "DeviceIdentifier"));
        if (facts.name.empty())
            facts.name = textOf(part, "VolumeName");
    });
    simdjson::dom::parser parser;
    element info;
    if (parser.parse(infoJson).get(info) == simdjson::SUCCESS) {
        if (std::string model = textOf(info, "MediaName"); !model.empty())
            facts.name = std::move(model);
        facts.isRemovable = holds(info, "RemovableMediaOrExternalDevice");
    }
    if (facts.name.empty())
        facts.name = facts.bsdName;
    addContents(disk, facts);
    return facts;
}

} // namespace

std::vector<std::string> info(const std::string& disk) {
    return {"/usr/sbin/diskutil", "info", "-plist", disk};
}

std::vector<std::string> unmount(const std::string& disk) {
    return {"/usr/sbin/diskutil", "unmountDisk", disk};
}

std::vector<DiskFacts> disksIn(std::string_view listJson,
                               const std::function<std::string(const std::string& disk)>& infoOf) {
    simdjson::dom::parser parser;
    element root;
    if (parser.parse(simdjson::padded_string(listJson)).get(root) != simdjson::SUCCESS)
        return {};
    std::vector<DiskFacts> disks;
    std::vector<element> containers;
    forEach(root, "AllDisksAndPartitions", [&](const element& disk) {
        if (array stores; disk["APFSPhysicalStores"].get(stores) == simdjson::SUCCESS)
            containers.push_back(disk);
        else if (DiskFacts facts = factsOf(disk, infoOf(textOf(disk, "DeviceIdentifier"))); facts.bytes > 0)
            disks.push_back(std::move(facts));
    });
    for (const element& container : containers)
        forEach(container, "APFSPhysicalStores", [&](const element& store) {
            const std::string part = "/dev/" + textOf(store, "DeviceIdentifier");
            for (DiskFacts& disk : disks)
                if (disk.device == part || std::ranges::find(disk.parts, part) != disk.parts.end())
                    addContents(container, disk);
        });
    std::ranges::sort(disks, {}, &DiskFacts::bsdName);
    return disks;
}

} // namespace vh::diskUtility
