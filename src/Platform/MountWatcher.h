#pragma once

#include "Platform/FileDescriptor.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

/// What is known of a mounted volume without asking it, so that a server that hangs does not hang the asker.
struct VolumeFacts {
    std::string path; ///< mount point
    std::string name; ///< label, else the last folder of the mount point
    std::optional<std::string> uuid;
    bool isNetwork = false;
    bool isInternal = false;
    std::string host;  ///< of a network volume, else empty
    std::string share; ///< what the host calls it, else empty
    bool operator==(const VolumeFacts&) const = default;
};

/// The volumes that hold a person's files, network volumes included, each mount point once.
std::vector<VolumeFacts> volumesNow();

/// Host and share of a network volume's source: "//host/share", "host:/path", "user@host:path" and URLs. Empty texts
/// for what names no host.
struct ShareSource {
    std::string host;
    std::string share;
};
ShareSource parseShareSource(std::string_view source);

/// Says when the mount table changes.
class MountWatcher {
public:
    /// Throws SystemError.
    MountWatcher();
    /// Exceptional (MainLoop::Readiness) when the table changed since the last acknowledge.
    int descriptor() const { return table_.get(); }
    /// Before the new table is read, so that a change meanwhile is told too.
    void acknowledge();

private:
    FileDescriptor table_;
};

} // namespace vh
