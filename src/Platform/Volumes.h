#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

/// A mounted file system as a person sees it.
struct Volume {
    std::string name; ///< label, else the last folder of the mount point; "System" for the root
    std::string path; ///< mount point
    std::string device;
    std::string fileSystem;
    uint64_t totalBytes = 0;
    uint64_t freeBytes = 0; ///< available to this user
    bool readOnly = false;
};

/// One line of the mount table, escapes undone.
struct MountEntry {
    unsigned id = 0;
    uint64_t device = 0; ///< as st_dev
    std::string root;
    std::string path;
    std::string fileSystem;
    std::string source;
    bool readOnly = false;
};

/// The kernel's mount table in its /proc/self/mountinfo form; lines that do not fit it are left out.
std::vector<MountEntry> parseMountInfo(std::string_view text);
std::vector<MountEntry> mountTable();

/// The path by which the device of a mounted file system can be opened, also where the table calls it only
/// "/dev/root"; empty when it has none.
std::string devicePathOf(const MountEntry& entry);

/// The mount point that holds `path`: the longest mounted folder that is a prefix of its real path.
std::string mountPointOf(const std::string& path);

/// Volumes that hold a person's files: no kernel file systems, each device once, the root first.
std::vector<Volume> mountedVolumes();

} // namespace vh
