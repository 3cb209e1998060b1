#include "Tools/FolderSync/SyncPairStore.h"

#include "Core/Codec.h"
#include "Platform/SystemError.h"

namespace vh::sync {

void SyncPairStore::catchUp() {
    const auto text = file_.news();
    if (!text)
        return;
    pairs_.clear();
    file_.setDamaged(false);
    try {
        if (!text->empty())
            pairs_ = decodeJson<std::vector<SyncPair>>(*text);
    } catch (const DecodeError&) {
        file_.setDamaged(true);
    }
}

std::vector<SyncPair> SyncPairStore::load() {
    try {
        catchUp();
        return pairs_;
    } catch (const SystemError&) {
        return {};
    }
}

void SyncPairStore::save(const std::vector<SyncPair>& pairs) {
    change([&](std::vector<SyncPair>& stored) { stored = pairs; });
}

void SyncPairStore::change(const std::function<void(std::vector<SyncPair>&)>& change) {
    const FileLock lock = file_.lock();
    catchUp();
    std::vector<SyncPair> changed = pairs_;
    change(changed);
    file_.write(encodeJson(changed, JsonStyle::pretty) + "\n");
    catchUp();
}

} // namespace vh::sync
