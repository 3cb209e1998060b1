#include "Platform/FolderReader.h"

#include "Platform/Linux/FileUsage.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/StatusMetadata.h"
#include "Platform/Posix/StatusType.h"

#include <cstring>
#include <dirent.h>
#include <unistd.h>

namespace vh {

namespace {

constexpr size_t blockBytes = 32u << 10;

std::optional<FileType> typeOfEntry(unsigned char type) {
    switch (type) {
    case DT_REG:
        return FileType::file;
    case DT_DIR:
        return FileType::folder;
    case DT_LNK:
        return FileType::link;
    case DT_SOCK:
        return FileType::socket;
    case DT_UNKNOWN:
        return std::nullopt;
    default:
        return FileType::other;
    }
}

} // namespace

FolderReader::FolderReader(const std::string& path)
    : folder_(openPath(path, O_RDONLY | O_DIRECTORY)), path_(path) {}

FolderReader::FolderReader(const FolderReader& parent, std::string_view name)
    : folder_(openAt(parent.folder_.get(), std::string(name), O_RDONLY | O_DIRECTORY | O_NOFOLLOW)),
      path_(joinPath(parent.path_, name)) {
    if (!folder_)
        throwErrno(path_);
}

FolderReader::~FolderReader() = default;
FolderReader::FolderReader(FolderReader&&) noexcept = default;

std::optional<FolderReader::Entry> FolderReader::next() {
    block_.resize(blockBytes);
    for (;;) {
        if (used_ == filled_) {
            const ssize_t got = ::getdents64(folder_.get(), block_.data(), block_.size());
            if (got < 0)
                throwErrno(path_);
            used_ = 0;
            filled_ = static_cast<size_t>(got);
            if (got == 0)
                return std::nullopt;
        }
        // The kernel lays each record out as a dirent64 and keeps it aligned.
        const auto* record = reinterpret_cast<const dirent64*>(block_.data() + used_);
        used_ += record->d_reclen;
        const std::string_view name = record->d_name;
        if (name == "." || name == "..")
            continue;
        if (const std::optional<FileType> type = typeOfEntry(record->d_type))
            return Entry{name, *type};
        struct stat status {};
        const bool known = ::fstatat(folder_.get(), record->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0;
        return Entry{name, known ? typeOfMode(status.st_mode) : FileType::other};
    }
}

std::optional<FileUsage> FolderReader::usage(std::string_view name) const {
    return usageAt(folder_.get(), std::string(name).c_str());
}

std::optional<FileUsage> FolderReader::usage() const {
    return usageAt(folder_.get(), "");
}

std::optional<FolderReader::Stamp> FolderReader::stamp(std::string_view name) const {
    struct stat status {};
    if (::fstatat(folder_.get(), std::string(name).c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return Stamp{typeOfMode(status.st_mode), status.st_size, metadataIn(status).modified};
    if (errno != ENOENT)
        throwErrno(joinPath(path_, name));
    return std::nullopt;
}

std::string FolderReader::linkTarget(std::string_view name) const {
    std::string target = readLinkAt(folder_.get(), std::string(name));
    if (target.empty())
        throwErrno(joinPath(path_, name));
    return target;
}

std::vector<std::string> childNames(const std::string& path) {
    std::vector<std::string> names;
    FolderReader reader(path);
    while (const auto entry = reader.next())
        names.emplace_back(entry->name);
    return names;
}

} // namespace vh
