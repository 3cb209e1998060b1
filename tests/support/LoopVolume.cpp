#include "support/LoopVolume.h"

#include "Platform/Blank.h"
#include "Platform/Files.h"
#include "support/LoopDisk.h"

#include <fcntl.h>
#include <filesystem>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace vh::test {

namespace {

void check(bool succeeded, const std::string& what) {
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

LoopVolume::LoopVolume(int64_t bytes, Kind kind)
    : kind_(kind), image_(folder_ / "image"), place_(folder_ / "volume") {
    std::filesystem::create_directory(place_);
    LoopDisk::run({"truncate", "-s", std::to_string(bytes), image_});
    if (kind == Kind::exfat)
        LoopDisk::run({"mkfs.exfat", image_});
    else // without a journal, which may lie behind what is to be broken
        LoopDisk::run({"mkfs.ext4", "-q", "-O", "^has_journal", image_});
    mount();
}

LoopVolume::~LoopVolume() {
    unmount();
}

void LoopVolume::mount() {
    device_ = trimmed(LoopDisk::run({"losetup", "--find", "--show", image_}));
    if (kind_ == Kind::exfat)
        LoopDisk::run({"mount.exfat-fuse", device_, place_});
    else
        LoopDisk::run({"mount", "-o", "errors=remount-ro", device_, place_});
}

void LoopVolume::unmount() {
    ::umount2(place_.c_str(), 0);
    ::umount2(place_.c_str(), MNT_DETACH);
    LoopDisk::run({"losetup", "-d", device_});
}

void LoopVolume::turnReadOnly() const {
    const std::string trigger =
        "/sys/fs/ext4/" + device_.substr(device_.rfind('/') + 1) + "/trigger_fs_error";
    const int file = ::open(trigger.c_str(), O_WRONLY | O_CLOEXEC);
    check(::write(file, "test", 4) == 4, trigger);
    ::close(file);
}

void LoopVolume::detach() {
    check(::umount2(place_.c_str(), MNT_DETACH) == 0, place_);
}

void LoopVolume::breakSecondHalf(const std::string& path) const {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    check(::fsync(file) == 0 && ::fstat(file, &status) == 0, path);
    ::syncfs(file);
    int block = static_cast<int>(status.st_size / 2 / status.st_blksize);
    check(::ioctl(file, FIBMAP, &block) == 0, path);
    ::posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
    ::close(file);
    check(::truncate(image_.c_str(), int64_t{block} * status.st_blksize) == 0, image_);
}

void LoopVolume::flipByteIn(std::string_view text) const {
    const int volume = ::open(place_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    check(::syncfs(volume) == 0, place_);
    ::close(volume);
    const size_t at = readFile(image_).find(text);
    const int image = ::open(image_.c_str(), O_WRONLY | O_CLOEXEC);
    const char other = static_cast<char>(text.front() ^ 1);
    check(at != std::string::npos && ::pwrite(image, &other, 1, static_cast<off_t>(at)) == 1, image_);
    ::close(image);
}

} // namespace vh::test
