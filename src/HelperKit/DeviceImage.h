#pragma once

#include "HelperKit/DeviceJob.h"
#include "Platform/CancelToken.h"
#include "Platform/CopyFolder.h"
#include "Platform/WholeDisk.h"

#include <mutex>
#include <optional>
#include <span>
#include <string>

namespace vh {
class ContentHash;
}

namespace vh::helper {

class BlockRing;

/// One image of a whole disk. Opened on one thread and made on another.
class DeviceImage {
public:
    /// What a block is that cannot be read.
    static constexpr size_t badBlockBytes = 4096;

    /// Opens both ends, the image's as user `owner`. Throws std::runtime_error that says why it is refused.
    DeviceImage(const DeviceJobSpec& spec, uint32_t owner);
    ~DeviceImage();

    /// Reads the disk once, and writes and hashes it meanwhile. Ends in the status with both ends closed, never throws.
    void make(const CancelToken& cancel);
    /// Any thread.
    DeviceJobStatus status() const;

private:
    void copy(const CancelToken& cancel);
    void writeAndHash(BlockRing& ring, ContentHash& hash, const CancelToken& cancel);
    void readAll(BlockRing& ring, const CancelToken& cancel);
    size_t readBlock(int64_t offset, std::span<char> block, const CancelToken& cancel);
    void readAroundBadBlocks(int64_t offset, std::span<char> block, const CancelToken& cancel);
    void readWhole(int64_t offset, std::span<char> piece);
    void finish(std::string sha256);
    void end(DeviceJobPhase phase, const std::string& error);
    void close();
    void log(const std::string& line);
    template <class Change>
    void change(Change what);

    const DeviceJobSpec spec_;
    const uint32_t owner_;
    std::optional<WholeDisk> disk_; ///< both until it is over
    std::optional<PartialFile> image_;
    mutable std::mutex mutex_;
    DeviceJobStatus status_;
};

} // namespace vh::helper
