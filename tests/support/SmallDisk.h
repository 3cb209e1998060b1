#pragma once

#include "support/ChildWork.h"
#include "support/TempDir.h"

namespace vh::test {

/// A small file system in memory, mounted on a folder of its own for as long as this lives. Needs the right to mount.
class TmpfsMount {
public:
    explicit TmpfsMount(size_t bytes);
    ~TmpfsMount();

    explicit operator bool() const { return mounted_; }
    const std::string& path() const { return folder_.path(); }
    std::string operator/(std::string_view name) const { return folder_ / name; }

private:
    TempDir folder_;
    bool mounted_ = false;
};

enum class SmallDisk {
    mounted,      ///< a file system of its own that really is full after so many bytes
    limitedFiles, ///< no right to mount: each file may only grow so large, which is weaker and said aloud
};

/// Runs the work in a child process on a disk with room for `bytes`. Its checks count when the caller looks at the
/// outcome.
ChildOutcome onSmallDisk(size_t bytes,
                         const std::function<void(const std::string& folder, SmallDisk kind)>& work);

} // namespace vh::test
