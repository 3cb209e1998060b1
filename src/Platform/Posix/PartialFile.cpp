#include "Platform/CopyFolder.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/CloneFile.h"
#include "Platform/Posix/CopyPiece.h"
#include "Platform/Posix/PathParts.h"
#include "Platform/Posix/Rename.h"
#include "Platform/Posix/StatusMetadata.h"
#include "Platform/Posix/StatusType.h"
#include "Platform/Posix/UniqueName.h"

#include <sys/file.h>
#include <unistd.h>

namespace vh {

namespace {

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

PartialFile::PartialFile(std::shared_ptr<FileDescriptor> folder, std::string name, std::string_view suffix,
                         std::string path, unsigned mode)
    : folder_(std::move(folder)), name_(std::move(name)), partialName_(partialNameOf(name_, suffix)),
      path_(std::move(path)) {
    begin(suffix, mode);
}

void PartialFile::begin(std::string_view suffix, unsigned mode) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW;
    constexpr int mostTries = 100;
    for (int tries = 0; tries < mostTries; ++tries) {
        file_ = openAt(folder_->get(), partialName_, flags, mode);
        if (file_ && claim(file_))
            return;
        if (!file_ && errno != EEXIST)
            throwErrno(path_);
        if (file_ || !removeLeftover(folder_->get(),
                                     partialName_)) // a living one took it for left over, or works at it
            partialName_ = partialNameOf(uniquePartialName(name_), suffix);
    }
    throw SystemError(EEXIST, path_);
}

PartialFile::PartialFile(PartialFile&& other) noexcept
    : folder_(std::move(other.folder_)), name_(std::move(other.name_)),
      partialName_(std::move(other.partialName_)), path_(std::move(other.path_)),
      file_(std::move(other.file_)), isPlaced_(std::exchange(other.isPlaced_, true)) {}

PartialFile::~PartialFile() {
    if (!isPlaced_)
        ::unlinkat(folder_->get(), partialName_.c_str(), 0);
}

void PartialFile::writeAt(int64_t offset, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t put =
            retried([&] { return ::pwrite(file_.get(), bytes.data(), bytes.size(), offset); });
        if (put < 0)
            throwErrno(path_);
        bytes.remove_prefix(static_cast<size_t>(put));
        offset += put;
    }
}

PartialFile::Cloned PartialFile::cloneFrom(const SourceFile& source) {
    return cloneContents(source.descriptor(), file_);
}

int64_t PartialFile::copyFrom(const SourceFile& source, int64_t offset, int64_t most) {
    return static_cast<int64_t>(
        copyPieceAt(source.descriptor(), file_, offset, static_cast<size_t>(most), path_));
}

void PartialFile::setSize(int64_t bytes) {
    if (::ftruncate(file_.get(), bytes) != 0)
        throwErrno(path_);
}

std::vector<std::string> PartialFile::apply(const FileMetadata& metadata) {
    return applyMetadata(file_, metadata);
}

FileState PartialFile::state() const {
    return stateIn(statusOfOpen(file_, path_));
}

void PartialFile::flush() {
    vh::flush(file_, path_);
}

void PartialFile::place(Place how) {
    const int folder = folder_->get();
    const bool isDone = how == Place::free
                            ? renameWithoutReplacing(folder, partialName_, folder, name_)
                            : ::renameat(folder, partialName_.c_str(), folder, name_.c_str()) == 0;
    if (!isDone)
        throwErrno(path_);
    isPlaced_ = true;
}

} // namespace vh
