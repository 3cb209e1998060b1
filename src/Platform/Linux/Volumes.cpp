#include "Platform/Volumes.h"

#include "Platform/FolderReader.h"
#include "Platform/Linux/VolumeChoice.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/PathParts.h"
#include "Platform/SystemError.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <sys/statvfs.h>

namespace vh {

namespace {

std::string realPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : path;
}

/// Labels by the device they are on; none where udev does not run.
std::map<std::string, std::string> labelsByDevice() {
    const std::string folder = "/dev/disk/by-label";
    std::map<std::string, std::string> labels;
    try {
        for (const std::string& name : childNames(folder))
            labels[realPath(joinPath(folder, name))] = labelOfLinkName(name);
    } catch (const SystemError&) {
        labels.clear();
    }
    return labels;
}

std::string nameOf(const MountEntry& entry, const std::map<std::string, std::string>& labels) {
    if (entry.path == "/")
        return "System";
    const auto label = labels.find(realPath(entry.source));
    return label != labels.end() ? label->second : splitPath(entry.path).name;
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// The root is always there, but in a changed root the table does not name it.
std::vector<MountEntry> entriesWithRoot() {
    auto entries = entriesForPeople(mountTable());
    if (entries.empty() || entries.front().path != "/")
        entries.insert(entries.begin(), MountEntry{.path = "/"});
    return entries;
}

} // namespace

std::vector<Volume> mountedVolumes() {
    const std::map<std::string, std::string> labels = labelsByDevice();
    std::vector<Volume> volumes;
    for (const MountEntry& entry : entriesWithRoot()) {
        struct statvfs space {};
        if (!isFolder(entry.path) || ::statvfs(entry.path.c_str(), &space) != 0 || space.f_blocks == 0)
            continue;
        volumes.push_back({nameOf(entry, labels), entry.path, entry.source, entry.fileSystem,
                           uint64_t{space.f_blocks} * space.f_frsize,
                           uint64_t{space.f_bavail} * space.f_frsize, entry.readOnly});
    }
    return volumes;
}

} // namespace vh
