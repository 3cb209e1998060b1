#pragma once

#include "Platform/CancelToken.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace vh {

/// What happened in a watched tree since it was last asked.
struct TreeChanges {
    bool something = false; ///< also when events were dropped: then the tree was looked at again
    bool isGone = false;    ///< its root was removed, moved or unmounted: nothing more will come
    /// Why a part of the tree is no longer watched, with the setting to raise; empty while all is.
    std::string trouble;
};

/// Watches a folder and all folders below it, those that come later included; links are not followed. At rest it costs
/// nothing. It may be made on any thread; then one thread at a time.
class TreeEvents {
public:
    /// Throws SystemError; when the system's limit of watches is used up, its message says how many folders the tree
    /// has and which setting to raise. Throws Cancelled.
    explicit TreeEvents(const std::string& folder, const CancelToken& cancel = {});
    ~TreeEvents();
    TreeEvents(TreeEvents&&) noexcept;
    TreeEvents& operator=(TreeEvents&&) noexcept;

    /// Readable when there are changes to take.
    int descriptor() const;
    /// Never blocks for long.
    TreeChanges take();
    size_t folderCount() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh
