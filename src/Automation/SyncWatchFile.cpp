#include "Automation/SyncWatchFile.h"

#include "Core/Codec.h"
#include "Platform/FileLock.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"

namespace vh::automation {

std::string leadLockOf(const Folders& folders) {
    return folders.data + "/Varnholt/automation.lock";
}

SyncWatchFile::SyncWatchFile(const Folders& folders)
    : leadLock_(leadLockOf(folders)), file_(folders.data + "/Varnholt/FolderSync/watch.json") {}

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

void SyncWatchFile::write(const std::vector<SyncWatchNote>& notes) {
    std::string text = encodeJson(notes) + "\n";
    if (text == written_)
        return;
    try {
        makeFolders(file_.substr(0, file_.rfind('/')));
        writeFileAtomically(file_, text);
        written_ = std::move(text);
    } catch (const SystemError&) {
        // The next change tries again.
    }
}

} // namespace vh::automation
