#pragma once

#include "support/TempDir.h"

#include <string>
#include <vector>

namespace vh::test {

/// A disk of its own, in a file, for as long as this lives. Needs the right to make one (package mount).
class LoopDisk {
public:
    /// Throws std::runtime_error when there is no such right.
    explicit LoopDisk(const std::string& content);
    ~LoopDisk();
    LoopDisk(const LoopDisk&) = delete;
    LoopDisk& operator=(const LoopDisk&) = delete;

    const std::string& device() const { return device_; } ///< "/dev/loop3"

    /// Runs a program to its end and gives its output; throws std::runtime_error with what it said when it failed.
    static std::string run(const std::vector<std::string>& words);

private:
    TempDir folder_;
    std::string device_;
};

} // namespace vh::test
