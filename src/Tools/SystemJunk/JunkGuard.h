#pragma once

#include "Platform/Files.h"
#include "Tools/SystemJunk/JunkCleanerError.h"
#include "Tools/SystemJunk/SystemJunkConfiguration.h"

#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vh::junk {

/// Answers why an entry directly under a root must stay. Scan and clean ask the same questions of it. Looks at mounts
/// and running programs anew when its last look is older than a second. Not for sharing between threads.
class JunkGuard {
public:
    explicit JunkGuard(const SystemJunkConfiguration& configuration);

    /// The index of the root that holds `path` (normalised) directly; nothing when none does.
    std::optional<size_t> rootOf(std::string_view path) const;

    /// The reason to keep what lies at `path` (normalised, directly under the root); nothing when it may go.
    std::optional<JunkCleanerError> reasonToKeep(const std::string& path, size_t root,
                                                 const FileStatus& status);

private:
    void lookAround();
    bool isNeeded(const std::string& path, const std::string& name, size_t root) const;
    bool isInUse(const std::string& name, size_t root);

    const SystemJunkConfiguration& configuration_;
    std::vector<std::string> realRoots_; ///< the roots without links
    std::chrono::steady_clock::time_point lookedAround_{};
    std::vector<std::string> held_;
    std::vector<std::string> own_;
    std::vector<std::string> mounts_;
    std::map<size_t, std::set<std::string>> inUse_; ///< by root, filled when asked for
};

} // namespace vh::junk
