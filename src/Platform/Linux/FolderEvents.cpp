#include "Platform/FolderEvents.h"

#include "Platform/FileIdentity.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/PathParts.h"

#include <algorithm>
#include <optional>
#include <sys/inotify.h>
#include <unistd.h>

namespace vh {

namespace {

constexpr uint32_t watched = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY |
                             IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR |
                             IN_EXCL_UNLINK;
constexpr uint32_t endings = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

[[noreturn]] void throwLimit(const std::string& folder, const char* what, const char* setting) {
    throw SystemError(folder, std::string("The system's limit of ") + what +
                                  " is used up; raise /proc/sys/fs/inotify/" + setting);
}

FileDescriptor openWatch(const std::string& folder) {
    FileDescriptor events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (!events && errno == EMFILE &&
        openAt(AT_FDCWD, "/", openForLookup)) // else it is this process's own limit
        throwLimit(folder, "open watches", "max_user_instances");
    if (!events)
        throwErrno(folder);
    if (::inotify_add_watch(events.get(), folder.c_str(), watched) >= 0)
        return events;
    if (errno == ENOSPC)
        throwLimit(folder, "watched folders", "max_user_watches");
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
    alignas(inotify_event) char block[16 << 10];
    constexpr int mostBlocks = 64; // who floods the folder must not keep us here; the rest stays readable
    for (int blocks = 0; blocks < mostBlocks; ++blocks) {
        const ssize_t got = retried([&] { return ::read(state_->events.get(), block, sizeof block); });
        if (got <= 0)
            break;
        for (const char* at = block; at < block + got;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            at += sizeof(inotify_event) + event->len;
            changes.lostSome = changes.lostSome || (event->mask & IN_Q_OVERFLOW) != 0;
            state_->isGone = state_->isGone || (event->mask & endings) != 0;
            if (event->len > 0)
                changes.names.emplace_back(event->name); // padded with NULs
        }
    }
    state_->isGone = state_->isGone || state_->isElsewhere();
    changes.isGone = state_->isGone;
    std::ranges::sort(changes.names);
    changes.names.erase(std::unique(changes.names.begin(), changes.names.end()), changes.names.end());
    return changes;
}

} // namespace vh
