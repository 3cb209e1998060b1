#pragma once

#include <cstdint>

namespace vh {

/// Whether an event of a watched tree says that its root is gone: it was moved or removed
/// (kFSEventStreamEventFlagRootChanged) or its volume unmounted (kFSEventStreamEventFlagUnmount).
constexpr bool endsTreeEvents(uint32_t flags) {
    return (flags & (0x20u | 0x80u)) != 0;
}

} // namespace vh
