#include "Tools/SystemJunk/ItemRecency.h"

namespace vh::junk {

Recency recencyOf(const ItemSize& item, std::optional<std::chrono::seconds> sharedAge, int64_t now) {
    // What was not seen whole may hold anything; a clock that was set back must not make things look old.
    if (sharedAge && (!item.isWhole || item.touchedSeconds > now - sharedAge->count()))
        return Recency::recentInShared;
    const int64_t limit = now - std::chrono::seconds(recentUse).count();
    return item.usedSeconds > limit ? Recency::recent : Recency::settled;
}

} // namespace vh::junk
