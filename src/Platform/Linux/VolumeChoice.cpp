#include "Platform/Linux/VolumeChoice.h"

#include "Platform/PathParts.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

namespace vh {

namespace {

bool isKernels(const MountEntry& entry) {
    static const std::set<std::string_view> never{
        "autofs",     "binfmt_misc", "bpf",         "cgroup",          "cgroup2",    "configfs",
        "debugfs",    "devpts",      "devtmpfs",    "efivarfs",        "fusectl",    "hugetlbfs",
        "mqueue",     "nsfs",        "proc",        "pstore",          "ramfs",      "rpc_pipefs",
        "securityfs", "selinuxfs",   "squashfs",    "sysfs",           "tmpfs",      "tracefs",
        "erofs",      "overlay",     "fuse.portal", "fuse.gvfsd-fuse", "fuse.lxcfs", "fuse.snapfuse"};
    return never.contains(entry.fileSystem);
}

bool isBootPartition(const MountEntry& entry) {
    return entry.path == "/boot" || entry.path.starts_with("/boot/") || entry.path == "/efi";
}

} // namespace

std::vector<MountEntry> entriesForPeople(const std::vector<MountEntry>& table) {
    std::map<std::string, const MountEntry*>
        visible; // a later mount covers an earlier one on the same folder
    for (const MountEntry& entry : table)
        visible[entry.path] = &entry;
    std::vector<const MountEntry*> byLength;
    for (const auto& [path, entry] : visible)
        byLength.push_back(entry);
    std::ranges::stable_sort(byLength, {}, [](const MountEntry* entry) { return entry->path.size(); });

    std::vector<MountEntry> chosen;
    std::set<uint64_t> devices;
    for (const MountEntry* entry : byLength)
        if (entry->path == "/" || (!isKernels(*entry) && !isBootPartition(*entry)))
            if (devices.insert(entry->device).second)
                chosen.push_back(*entry);
    std::ranges::sort(chosen, {}, &MountEntry::path);
    return chosen;
}

std::vector<MountEntry> entriesWithRoot(const std::vector<MountEntry>& table) {
    auto entries = entriesForPeople(table);
    if (entries.empty() || entries.front().path != "/")
        entries.insert(entries.begin(), MountEntry{.path = "/"});
    return entries;
}

bool isOnNetwork(const MountEntry& entry) {
    static const std::set<std::string_view> network{"9p",
                                                    "afs",
                                                    "ceph",
                                                    "cifs",
                                                    "coda",
                                                    "davfs",
                                                    "fuse.ceph",
                                                    "fuse.curlftpfs",
                                                    "fuse.davfs2",
                                                    "fuse.glusterfs",
                                                    "fuse.rclone",
                                                    "fuse.s3fs",
                                                    "fuse.smbnetfs",
                                                    "fuse.sshfs",
                                                    "glusterfs",
                                                    "lustre",
                                                    "ncpfs",
                                                    "nfs",
                                                    "nfs4",
                                                    "orangefs",
                                                    "smb3",
                                                    "smbfs"};
    // Some drivers say only "fuse" and name a URL as the source.
    return network.contains(entry.fileSystem) ||
           (entry.fileSystem.starts_with("fuse") && entry.source.find("://") != std::string::npos);
}

std::string volumeName(const MountEntry& entry, const std::optional<std::string>& label) {
    return entry.path == "/" ? "System" : label.value_or(splitPath(entry.path).name);
}

std::string labelOfLinkName(std::string_view name) {
    std::string label;
    while (!name.empty()) {
        unsigned char byte = 0;
        const char* digits = name.data() + 2;
        if (name.size() >= 4 && name.starts_with("\\x") &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            label += static_cast<char>(byte);
            name.remove_prefix(4);
        } else {
            label += name.front();
            name.remove_prefix(1);
        }
    }
    return label;
}

} // namespace vh
