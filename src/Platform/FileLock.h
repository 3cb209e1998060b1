#pragma once

#include "Platform/FileDescriptor.h"

#include <string>

namespace vh {

/// An exclusive advisory lock between processes on the file at `path`, which is created empty and never removed.
/// Held until destruction, which frees it also for what a fork shares it with, or the end of the process. Not
/// recursive.
class FileLock {
public:
    /// Waits for the lock. Throws SystemError.
    explicit FileLock(const std::string& path);
    /// Takes the lock if it is free, else gives an object that is false.
    static FileLock tryLock(const std::string& path);
    FileLock(FileLock&&) noexcept = default;
    FileLock& operator=(FileLock&&) = delete;
    ~FileLock();
    explicit operator bool() const { return static_cast<bool>(file_); }

private:
    FileLock() = default;
    FileDescriptor file_;
};

} // namespace vh
