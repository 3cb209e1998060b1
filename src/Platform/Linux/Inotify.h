#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/Posix/Calls.h"

#include <cstdint>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>

namespace vh {

/// All that changes in a folder or happens to itself; only folders are accepted.
constexpr uint32_t folderEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY |
                                  IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR |
                                  IN_EXCL_UNLINK;

/// A queue of events to watch `folder` with. Throws SystemError, with the setting to raise where the system has no more.
FileDescriptor openInotify(const std::string& folder);

/// Calls `take` with the events that wait, without waiting for any.
template <class Take>
void takeInotifyEvents(const FileDescriptor& events, Take take) {
    alignas(inotify_event) char block[16 << 10];
    constexpr int mostBlocks = 64; // who floods the folder must not keep us here; the rest stays readable
    for (int blocks = 0; blocks < mostBlocks; ++blocks) {
        const ssize_t got = retried([&] { return ::read(events.get(), block, sizeof block); });
        if (got <= 0)
            return;
        for (const char* at = block; at < block + got;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            at += sizeof(inotify_event) + event->len;
            take(*event);
        }
    }
}

} // namespace vh
