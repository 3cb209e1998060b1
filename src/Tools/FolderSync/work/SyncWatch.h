#pragma once

#include "Automation/AutomationWorld.h"
#include "Automation/Worker.h"
#include "Tools/FolderSync/work/FolderWatcher.h"
#include "Tools/FolderSync/work/SyncJob.h"
#include "Tools/FolderSync/work/SyncLook.h"
#include "Tools/FolderSync/work/SyncOccasions.h"
#include "Tools/FolderSync/work/SyncWatchFile.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vh::automation {

/// Keeps an eye on the watched pairs, and says which is to be synced. Folders are looked at on threads, for their disk
/// may not answer. Main thread.
class SyncWatch {
public:
    struct Owner {
        std::function<std::vector<sync::SyncPair>()> pairs;
        std::function<void(const Uuid&)> sync; ///< when its turn comes; a second time before it does nothing
        std::function<void(const Uuid&)> drop; ///< it is not watched any more
        std::function<void()> changed;         ///< states() has
    };
    SyncWatch(const AutomationWorld& world, SyncWatchFile& file, Owner owner);
    ~SyncWatch();

    /// Looks at all watched pairs; with `catchUp` each that can be is synced, else only what has changed.
    void reconcile(bool catchUp);
    /// What changes from now on is for the sync after this one.
    void begins(const Uuid& pair);
    /// Lets go of the held ones that a person has looked at, in whatever process.
    void takeApprovals();
    /// True when it is held and was not before.
    bool ended(const SyncJobRequest& request, const SyncJobResult& result);
    std::map<Uuid, sync::WatchState> states() const;

private:
    struct Watched {
        sync::SyncPair pair;
        std::unique_ptr<FolderWatcher> watcher;
        std::optional<sync::WatchState> blocker;
        std::optional<int64_t> hold; ///< so many would be removed
        std::string syncFailure, watchFailure;
        SyncMounts mounts;      ///< where its folders were when it was last well
        bool isDirty = false;   ///< changed since its last sync began
        bool catchesUp = false; ///< is to be synced whether it changed or not
        bool isKnown = false;   ///< was looked at
        uint64_t look = 0;      ///< that is under way; 0 for none
        bool looksAgain = false;
        MainLoop::Token retry;

        sync::WatchState state() const;
    };
    Watched* find(const Uuid& pair);
    void adopt(const sync::SyncPair& pair);
    void look(Watched& watched, bool catchUp);
    void looked(const Uuid& pair, uint64_t number, const SyncLook& seen);
    void startWatcher(Watched& watched);
    void started(const Uuid& pair);
    void changed(const Uuid& pair);
    void rootChanged(const Uuid& pair);
    void failed(const Uuid& pair, const SystemError& why);
    void askForSync(Watched& watched);
    void mountsChanged(const std::set<std::string>& mounted, const std::set<std::string>& unmounted);
    void lookWithTime();
    void publish();

    const AutomationWorld& world_;
    SyncWatchFile& file_;
    const Owner owner_;
    std::map<Uuid, SyncWatchNote> left_; ///< by whoever led before, of pairs that were not seen yet
    Worker worker_;
    std::map<Uuid, Watched> watched_;
    std::map<Uuid, sync::WatchState> told_;
    uint64_t looks_ = 0;
    SyncOccasions occasions_;
};

} // namespace vh::automation
