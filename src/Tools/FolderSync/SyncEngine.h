#pragma once

#include "Platform/CancelToken.h"
#include "Tools/FolderSync/SyncError.h"
#include "Tools/FolderSync/SyncIndex.h"
#include "Tools/FolderSync/SyncPair.h"
#include "Tools/FolderSync/SyncPlan.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vh::sync {

/// Makes one folder like another. Has no state; all of it blocks and is called off the main thread.
class SyncEngine {
public:
    /// Whether a file of that path is the same byte by byte in both trees.
    using SameContents = std::function<bool(std::string_view relative)>;

    /// Throws SyncError when a folder of a pair is missing or one holds the other.
    static void check(const SyncPair& pair);
    /// Compares the two folders of a pair. Throws SyncError, SystemError when one of them cannot be listed or was replaced
    /// meanwhile, Cancelled.
    static SyncPlan plan(const SyncPair& pair, const CancelToken& cancel = {});
    /// Compares two indexes. Files of one size whose dates are less than 2 s apart count as the same.
    static SyncPlan plan(const SyncIndex& source, const SyncIndex& destination, bool deleteExtraneous,
                         const SameContents& sameContents = {});

    /// One action that has ended.
    struct Step {
        const SyncAction& action;
        bool isFailed = false;
        std::optional<std::string> landed; ///< where in the Trash that lies which it moved there
    };
    struct Steering {
        /// After each action.
        std::function<void(int64_t done, int64_t total)> progress;
        /// Before each action, and between the blocks of a large file.
        std::function<bool()> shouldContinue;
        /// More of a large file.
        std::function<void(int64_t bytes)> copied;
        /// Before something goes to the Trash.
        std::function<void(const std::string& path)> removing;
        /// After each action, before `progress`.
        std::function<void(const Step&)> ended;
    };
    /// Carries a plan out. A failed action is a line among the errors and never stops the run; what was at a name is
    /// replaced when the new file is whole, and what has to leave goes to the Trash. Holes stay holes, names of one
    /// file become files of their own, folders in which something changed get the source's metadata. Nothing is removed that the source has by then.
    /// Throws SystemError when one of the folders cannot be opened, or is not the one that was compared.
    static SyncResult apply(const SyncPlan& plan, const SyncPair& pair, const Steering& steering = {});

    /// False also when one of them cannot be read.
    static bool fileEqual(const std::string& one, const std::string& other);
};

} // namespace vh::sync
