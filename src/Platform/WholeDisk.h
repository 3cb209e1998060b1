#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace vh {

class FileDescriptor;

/// A whole disk, open for reading, that nobody else uses, and that nobody can mount meanwhile. One thread at a time.
class WholeDisk {
public:
    /// `device` is its node, such as "/dev/sdb". Throws std::runtime_error that says why it is refused: no disk but a
    /// part of one, mounted, or used by another device.
    explicit WholeDisk(const std::string& device);
    ~WholeDisk();
    WholeDisk(const WholeDisk&) = delete;
    WholeDisk& operator=(const WholeDisk&) = delete;

    int64_t bytes() const { return bytes_; }
    /// Fills the block, less only at the disk's end. Throws SystemError.
    size_t readAt(int64_t offset, std::span<char> block) const;
    /// What was read up to there need not stay in memory.
    void forgetUpTo(int64_t offset) const;

private:
    std::string device_;
    std::unique_ptr<FileDescriptor> file_;
    int64_t bytes_ = 0;
};

} // namespace vh
