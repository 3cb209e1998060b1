#include "support/SmallDisk.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <fmt/format.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace vh::test {

namespace {

bool writeText(const char* path, const std::string& text) {
    const int file = ::open(path, O_WRONLY | O_CLOEXEC);
    const bool written =
        file >= 0 && ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    if (file >= 0)
        ::close(file);
    return written;
}

/// Mounts of our own: as the administrator of the machine, or of a user namespace made for it.
bool enterOwnMounts() {
    const unsigned user = ::geteuid();
    const unsigned group = ::getegid();
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 || !writeText("/proc/self/setgroups", "deny") ||
            !writeText("/proc/self/uid_map", fmt::format("0 {} 1", user)) ||
            !writeText("/proc/self/gid_map", fmt::format("0 {} 1", group)))
            return false;
    }
    return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

TmpfsMount::TmpfsMount(size_t bytes)
    : mounted_(::mount("tmpfs", folder_.path().c_str(), "tmpfs", MS_NOSUID | MS_NODEV,
                       fmt::format("size={},mode=1777", bytes).c_str()) == 0) {}

TmpfsMount::~TmpfsMount() {
    if (mounted_)
        ::umount2(folder_.path().c_str(), MNT_DETACH);
}

ChildOutcome onSmallDisk(size_t bytes,
                         const std::function<void(const std::string& folder, SmallDisk kind)>& work) {
    return runInChild([&] {
        if (enterOwnMounts()) {
            if (const TmpfsMount disk(bytes); disk)
                return work(disk.path(), SmallDisk::mounted);
        }
        std::fprintf(
            stderr, "\n*** No right to mount: a limit on the size of files stands in for a full disk. ***\n");
        const rlimit limit{bytes, bytes};
        ::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const TempDir folder;
        work(folder.path(), SmallDisk::limitedFiles);
    });
}

} // namespace vh::test
