#include "Platform/SourceFile.h"

#include "Platform/Posix/Calls.h"
#include "Platform/Posix/ExtendedAttributes.h"
#include "Platform/Posix/StatusMetadata.h"

#include <limits>
#include <unistd.h>

namespace vh {

namespace {

constexpr int readingFlags = O_RDONLY | O_NONBLOCK; // a pipe without a writer must not hold us

} // namespace

std::optional<FileState> fileStateOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return stateIn(status);
}

SourceFile::SourceFile(const std::string& path, Attributes attributes)
    : path_(path), file_(openPath(path, readingFlags)) {
    look(attributes);
}

SourceFile::SourceFile(const FileDescriptor& folder, const std::string& name, std::string path,
                       Attributes attributes)
    : path_(std::move(path)), file_(openAt(folder.get(), name, readingFlags | O_NOFOLLOW)) {
    if (!file_)
        throwErrno(path_);
    look(attributes);
}

void SourceFile::look(Attributes attributes) {
    const struct stat status = statusOfOpen(file_, path_);
    if (!S_ISREG(status.st_mode))
        throw SystemError(path_, "Not a plain file");
    state_ = stateIn(status);
    device_ = status.st_dev;
    hasHoles_ = status.st_blocks * 512 < status.st_size;
    metadata_ = metadataIn(status);
    if (attributes == Attributes::read)
        metadata_.attributes = attributesOf(file_.get());
}

std::optional<SourceFile::Stretch> SourceFile::stretchFrom(int64_t offset) const {
    if (!hasHoles_)
        return Stretch{offset, std::numeric_limits<int64_t>::max()};
    const off_t begin = ::lseek(file_.get(), offset, SEEK_DATA);
    if (begin < 0 && errno == ENXIO)
        return std::nullopt;
    const off_t end = begin < 0 ? begin : ::lseek(file_.get(), begin, SEEK_HOLE);
    if (end < 0)
        throwErrno(path_);
    return Stretch{begin, end};
}

size_t SourceFile::readAt(int64_t offset, std::span<char> block) const {
    return vh::readAt(file_, offset, block, path_);
}

bool SourceFile::hasChanged() const {
    const struct stat status = statusOfOpen(file_, path_);
    return status.st_size != state_.bytes || metadataIn(status).modified != metadata_.modified;
}

} // namespace vh
