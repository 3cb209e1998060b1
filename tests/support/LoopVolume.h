#pragma once

#include "support/TempDir.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vh::test {

/// A volume in a file, mounted for as long as this lives, that meets the bad days of a real one. Needs the right to
/// mount (packages mount, e2fsprogs, exfat-fuse, exfatprogs). What fails throws std::runtime_error.
class LoopVolume {
public:
    enum class Kind {
        ext4,
        exfat ///< tells no case, keeps no links, owners and attributes
    };
    explicit LoopVolume(int64_t bytes, Kind kind = Kind::ext4);
    ~LoopVolume();
    LoopVolume(const LoopVolume&) = delete;
    LoopVolume& operator=(const LoopVolume&) = delete;

    const std::string& path() const { return place_; }
    std::string operator/(std::string_view name) const { return place_ + "/" + std::string(name); }

    /// As after an error of its disk.
    void turnReadOnly() const;
    /// Away from its place at once, though still in use.
    void detach();
    /// Whoever reads the second half of this file, or what lies behind it on the volume, meets an error of the disk.
    void breakSecondHalf(const std::string& path) const;
    /// Another byte where `text` lies on the medium, behind the back of the system.
    void flipByteIn(std::string_view text) const;

private:
    void mount();
    void unmount();

    TempDir folder_;
    const Kind kind_;
    const std::string image_, place_;
    std::string device_; ///< "/dev/loop3"
};

} // namespace vh::test
