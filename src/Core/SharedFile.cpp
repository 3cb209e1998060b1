#include "Core/SharedFile.h"

#include "Platform/Files.h"

#include <filesystem>

namespace vh {

std::optional<std::string> SharedFile::news() {
    const auto now = stampOf(path_);
    if (isRead_ && (open_ ? now == stamp_ : !now))
        return std::nullopt;
    auto opened = GrowingFile::openIfPresent(path_);
    const FileStamp stamp = opened ? opened->stamp() : FileStamp{};
    std::string text = opened ? opened->readFrom(0) : std::string();
    open_ = std::move(opened);
    stamp_ = stamp;
    isRead_ = true;
    return text;
}

FileLock SharedFile::lock() const {
    makeFolders(std::filesystem::path(path_).parent_path());
    return FileLock(path_ + ".lock");
}

void SharedFile::write(std::string_view text) {
    if (isDamaged_)
        writeFileAtomically(path_ + ".damaged", readFile(path_));
    writeFileAtomically(path_, text);
}

} // namespace vh
