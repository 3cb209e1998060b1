#pragma once

#include "Platform/CancelToken.h"
#include "Platform/SystemError.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace vh {

/// How far the system's limit of watched folders is from what a tree needs.
struct WatchLimit {
    size_t folders = 0; ///< that the tree has
    size_t limit = 0;   ///< of all trees of this user together
    size_t raiseTo = 0; ///< with what others watch besides
    /// The line for sysctl that raises it; empty on a system without such a limit.
    std::string setting() const;
    bool operator==(const WatchLimit&) const = default;
};

class WatchLimitReached : public SystemError {
public:
    WatchLimitReached(const std::string& folder, const WatchLimit& limit);
    const WatchLimit& limit() const { return limit_; }

private:
    WatchLimit limit_;
};

/// What happened in a watched tree since it was last asked.
struct TreeChanges {
    bool something = false;          ///< also when events were dropped: then the tree was looked at again
    bool isGone = false;             ///< its root was removed, moved or unmounted: nothing more will come
    std::optional<WatchLimit> limit; ///< that was met by now: a part of the tree is not watched
};

/// Watches a folder and all folders below it, those that come later included, over mounts too; links are not followed,
/// and folders that may not be listed are left out until they may. At rest it costs nothing. It may be made on any
/// thread; then one thread at a time.
class TreeEvents {
public:
    /// What happens in the folder `except` below it, if there is one, is not told. Throws SystemError, WatchLimitReached
    /// when the tree has more folders than may be watched, and Cancelled.
    explicit TreeEvents(const std::string& folder, const std::string& except = {},
                        const CancelToken& cancel = {});
    ~TreeEvents();
    TreeEvents(TreeEvents&&) noexcept;
    TreeEvents& operator=(TreeEvents&&) noexcept;

    /// Readable when there are changes to take.
    int descriptor() const;
    /// Looks at folders that are new, and at all of them when events were dropped. Throws Cancelled.
    TreeChanges take();
    size_t folderCount() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh
