#include "Platform/CopyFolder.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/CloneFile.h"
#include "Platform/Posix/CopyPiece.h"
#include "Platform/Posix/Rename.h"
#include "Platform/Posix/StatusMetadata.h"
#include "Platform/Posix/StatusType.h"
#include "Platform/Posix/UniqueName.h"
#include "Platform/Posix/UnnamedFile.h"

#include <algorithm>
#include <sys/file.h>
#include <unistd.h>

namespace vh {

namespace {

/// For larger ones the kernel looks for larger runs of free memory, which it may have to make first: at 4 MiB a write
/// takes five times as long.
constexpr size_t pieceBytes = 256 << 10;

/// What works at a file holds its lock, so that nobody takes it for left over. Where there are no locks, all do without.
bool lock(const FileDescriptor& file) {
    return ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

/// False when somebody took it away before it was locked.
bool claim(const FileDescriptor& file) {
    struct stat status {};
    return lock(file) && (::fstat(file.get(), &status) != 0 || status.st_nlink > 0);
}

/// Takes away what a killed process left; false when a living one works at it.
bool removeLeftover(int folder, const std::string& name) {
    const FileDescriptor file = openAt(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!file && errno == ENOENT)
        return true;
    if (file && !lock(file))
        return false;
    struct stat here {
    }, there{};
    if (file && (::fstat(file.get(), &here) != 0 ||
                 ::fstatat(folder, name.c_str(), &there, AT_SYMLINK_NOFOLLOW) != 0 ||
                 identityIn(here) != identityIn(there)))
        return true; // it is gone, so the name is free or another's
    return ::unlinkat(folder, name.c_str(), 0) == 0 || errno == ENOENT;
}

} // namespace

PartialFile::PartialFile(Target target, unsigned mode) : target_(std::move(target)) {
    if (!target_.isUntouched)
        removeLeftover(target_.folder->get(), partialNameOf(target_.name, target_.suffix));
    file_ = createUnnamed(target_.folder->get(), static_cast<mode_t>(mode));
    if (!file_ && !cannotBeUnnamed(errno))
        throwErrno(target_.path);
    if (file_)
        return;
    nameOnTheWay([&](const std::string& name) {
        file_ = openAt(target_.folder->get(), name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW,
                       static_cast<mode_t>(mode));
        if (!file_ || claim(file_))
            return static_cast<bool>(file_);
        errno = EEXIST; // somebody took it for left over
        return false;
    });
}

/// `take` makes the name ours, or fails with EEXIST.
template <class Take>
void PartialFile::nameOnTheWay(Take take) {
    constexpr int mostTries = 100;
    partialName_ = partialNameOf(target_.name, target_.suffix);
    for (int tries = 0; tries < mostTries && !take(partialName_); ++tries) {
        if (errno != EEXIST) {
            const int reason = errno;
            partialName_.clear();
            throw SystemError(reason, target_.path);
        }
        if (!removeLeftover(target_.folder->get(), partialName_)) // a living one works at it
            partialName_ = partialNameOf(uniquePartialName(target_.name), target_.suffix);
    }
}

PartialFile::PartialFile(PartialFile&& other) noexcept
    : target_(std::move(other.target_)), partialName_(std::exchange(other.partialName_, {})),
      file_(std::move(other.file_)) {}

PartialFile::~PartialFile() {
    if (!partialName_.empty())
        ::unlinkat(target_.folder->get(), partialName_.c_str(), 0);
}

void PartialFile::writeAt(int64_t offset, std::string_view bytes) {
    while (!bytes.empty()) {
        const size_t most = std::min(bytes.size(), pieceBytes);
        const ssize_t put = retried([&] { return ::pwrite(file_.get(), bytes.data(), most, offset); });
        if (put < 0)
            throwErrno(target_.path);
        bytes.remove_prefix(static_cast<size_t>(put));
        offset += put;
    }
}

PartialFile::Cloned PartialFile::cloneFrom(const SourceFile& source) {
    return cloneContents(source.descriptor(), file_);
}

int64_t PartialFile::copyFrom(const SourceFile& source, int64_t offset, int64_t most) {
    return static_cast<int64_t>(
        copyPieceAt(source.descriptor(), file_, offset, static_cast<size_t>(most), target_.path));
}

void PartialFile::setSize(int64_t bytes) {
    if (::ftruncate(file_.get(), bytes) != 0)
        throwErrno(target_.path);
}

RefusedMetadata PartialFile::apply(const FileMetadata& metadata) {
    return applyMetadata(file_, metadata, target_.givesLists ? Inherited::lists : Inherited::nothing);
}

FileState PartialFile::state() const {
    return stateIn(statusOfOpen(file_, target_.path));
}

void PartialFile::flush() {
    vh::flush(file_, target_.path);
}

void PartialFile::place(Place how) {
    const int folder = target_.folder->get();
    const auto take = [&](const std::string& name) {
        return giveName(file_, folder, name);
    };
    const bool isUnnamed = partialName_.empty();
    if (isUnnamed && how == Place::replacing) {
        lock(file_);
        nameOnTheWay(take);
    }
    const bool isDone = how == Place::replacing
                            ? ::renameat(folder, partialName_.c_str(), folder, target_.name.c_str()) == 0
                        : isUnnamed ? take(target_.name)
                                    : renameWithoutReplacing(folder, partialName_, folder, target_.name);
    if (!isDone)
        throwErrno(target_.path);
    partialName_.clear();
}

} // namespace vh
