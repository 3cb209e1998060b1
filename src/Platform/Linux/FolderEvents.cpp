#include "Platform/FolderEvents.h"

#include "Platform/FileIdentity.h"
#include "Platform/Linux/Inotify.h"
#include "Platform/PathParts.h"

#include <algorithm>
#include <optional>

namespace vh {

namespace {

constexpr uint32_t endings = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

FileDescriptor openWatch(const std::string& folder) {
    FileDescriptor events = openInotify(folder);
    if (::inotify_add_watch(events.get(), folder.c_str(), folderEvents) >= 0)
        return events;
    if (errno == ENOSPC)
        throw SystemError(folder, "The system's limit of watched folders is used up; raise "
                                  "/proc/sys/fs/inotify/max_user_watches");
    throwErrno(folder);
}

} // namespace

struct FolderEvents::State {
    FileDescriptor events;
    std::string folder;
    std::optional<FileIdentity> identity;
    bool isGone = false;

    /// The kernel does not tell when a folder above it is moved.
    bool isElsewhere() const { return identityOf(joinPath(folder, ".")) != identity; }
};

FolderEvents::FolderEvents(const std::string& folder)
    : state_(std::make_unique<State>(State{openWatch(folder), folder, identityOf(joinPath(folder, "."))})) {}
FolderEvents::~FolderEvents() = default;
FolderEvents::FolderEvents(FolderEvents&&) noexcept = default;
FolderEvents& FolderEvents::operator=(FolderEvents&&) noexcept = default;

int FolderEvents::descriptor() const {
    return state_->events.get();
}

FolderChanges FolderEvents::take() {
    FolderChanges changes;
    takeInotifyEvents(state_->events, [&](const inotify_event& event) {
        changes.lostSome = changes.lostSome || (event.mask & IN_Q_OVERFLOW) != 0;
        state_->isGone = state_->isGone || (event.mask & endings) != 0;
        if (event.len > 0)
            changes.names.emplace_back(event.name); // padded with NULs
    });
    state_->isGone = state_->isGone || state_->isElsewhere();
    changes.isGone = state_->isGone;
    std::ranges::sort(changes.names);
    changes.names.erase(std::unique(changes.names.begin(), changes.names.end()), changes.names.end());
    return changes;
}

} // namespace vh
