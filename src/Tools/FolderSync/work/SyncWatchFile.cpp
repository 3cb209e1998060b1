#include "Tools/FolderSync/work/SyncWatchFile.h"

#include "Automation/AutomationDependencies.h"
#include "Core/Codec.h"
#include "Platform/FileLock.h"
#include "Platform/Files.h"
#include "Platform/Removal.h"
#include "Platform/SystemError.h"

#include <algorithm>

namespace vh::automation {

SyncWatchFile::SyncWatchFile(const Folders& folders)
    : leadLock_(leadLockOf(folders)), folder_(folders.data + "/Varnholt/FolderSync"),
      file_(folder_ + "/watch.json") {}

bool SyncWatchFile::isLed() const {
    try {
        return statusOf(leadLock_) && !FileLock::tryLock(leadLock_);
    } catch (const SystemError&) {
        return false;
    }
}

std::vector<SyncWatchNote> SyncWatchFile::notes() const {
    try {
        if (const auto text = readFileIfPresent(file_))
            return decodeJson<std::vector<SyncWatchNote>>(*text);
    } catch (const std::runtime_error&) {
        // It is written anew by whoever leads.
    }
    return {};
}

std::map<Uuid, sync::WatchState> SyncWatchFile::states() const {
    std::map<Uuid, sync::WatchState> states;
    if (isLed())
        for (SyncWatchNote& each : notes())
            states.insert_or_assign(each.pair.id, std::move(each.state));
    return states;
}

SyncMounts SyncWatchFile::mountsOf(const sync::SyncPair& pair) const {
    for (SyncWatchNote& each : notes())
        if (each.pair.id == pair.id && each.pair.source == pair.source &&
            each.pair.destination == pair.destination)
            return {std::move(each.sourceMount), std::move(each.destinationMount)};
    return {};
}

void SyncWatchFile::approve(const Uuid& pair) const {
    const auto isHeld = [&](const SyncWatchNote& each) {
        return each.pair.id == pair && each.state.kind == sync::WatchState::Kind::held;
    };
    try {
        if (std::ranges::any_of(notes(), isHeld))
            writeFileAtomically(approvalOf(pair), "");
    } catch (const SystemError&) {
        // It stays held, as everybody sees, until it is run by hand again.
    }
}

bool SyncWatchFile::takeApproval(const Uuid& pair) const {
    try {
        const std::string file = approvalOf(pair);
        if (!statusOf(file))
            return false;
        removePermanently(file);
        return true;
    } catch (const SystemError&) {
        return false;
    }
}

void SyncWatchFile::write(const std::vector<SyncWatchNote>& notes) {
    std::string text = encodeJson(notes) + "\n";
    if (text == written_)
        return;
    try {
        makeFolders(folder_);
        writeFileAtomically(file_, text);
        written_ = std::move(text);
    } catch (const SystemError&) {
        // The next change tries again.
    }
}

} // namespace vh::automation
