#include "Tools/FastCopy/TakenUp.h"

#include "Platform/SystemError.h"

namespace vh::copy {

const std::optional<FileState>& TakenUp::sourceOf(size_t item) {
    if (item_ != item)
        source_ = fileStateOf(run_.found().pathOf(item));
    item_ = item;
    return source_;
}

std::optional<FileState> TakenUp::copyAt(size_t destination, const std::string& place) {
    folders_.resize(run_.destinations().size());
    try {
        if (!folders_[destination])
            folders_[destination].emplace(run_.destinations()[destination]);
        return folders_[destination]->fileState(place);
    } catch (const SystemError&) { // the copy itself will say why
        return std::nullopt;
    }
}

bool TakenUp::takeUp(size_t item, size_t destination) {
    const CopyProofs::Note* note = proofs_.find(destination, run_.relativeOf(item));
    if (!note || sourceOf(item) != note->source)
        return false;
    const auto copy = copyAt(destination, note->place);
    if (!copy)
        return false;
    const bool isProven = !note->checksum.empty() && *copy == note->copy;
    const bool isWhole = note->isOfThisBoot && copy->inode == note->copy.inode &&
                         copy->bytes == note->copy.bytes && copy->modified == note->copy.modified;
    if (!isProven && !isWhole)
        return false;
    run_.book(item, destination,
              {note->isCloned ? CopiedFileState::cloned : CopiedFileState::copied,
               note->isReplaced,
               note->place,
               {}},
              0);
    if (isProven)
        run_.bookVerified(item, destination, note->checksum);
    return true;
}

} // namespace vh::copy
