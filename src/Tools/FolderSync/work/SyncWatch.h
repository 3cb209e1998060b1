#pragma once

#include "Automation/AutomationDependencies.h"
#include "Automation/Worker.h"
#include "Tools/FolderSync/work/FolderWatcher.h"
#include "Tools/FolderSync/work/SyncJob.h"
#include "Tools/FolderSync/work/SyncLook.h"
#include "Tools/FolderSync/work/SyncOccasions.h"
#include "Tools/FolderSync/work/SyncWatchFile.h"
#include "Tools/FolderSync/work/WatchMachine.h"

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
    SyncWatch(const AutomationDependencies& dependencies, SyncWatchFile& file, Owner owner);
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
        WatchMachine machine;
        uint64_t number =
            0; ///< of this object: another one may stand for the pair by the time that a look ends
        std::unique_ptr<FolderWatcher> watcher = {};
        SyncMounts mounts = {}; ///< where its folders were when it was last well
        MainLoop::Token retry = {};
    };
    Watched* find(const Uuid& pair);
    /// Takes the pairs as they are stored now.
    void adoptAll();
    void adopt(const sync::SyncPair& pair);
    void timePasses();
    /// What the machine says of an event.
    void carryOut(Watched& watched, const WatchMachine::Todo& todo);
    void look(Watched& watched);
    void looked(const Uuid& pair, uint64_t number, const SyncLook& seen);
    void startWatcher(Watched& watched);
    /// Of an event, and makes known what came of it.
    template <class... Arguments, class... Given>
    void tell(const Uuid& pair, WatchMachine::Todo (WatchMachine::*event)(Arguments...), Given&&... given);
    std::string textOf(const SystemError& why) const;
    void mountsChanged(const std::set<std::string>& mounted, const std::set<std::string>& unmounted);
    void publish();

    const AutomationDependencies& dependencies_;
    SyncWatchFile& file_;
    const Owner owner_;
    std::map<Uuid, SyncWatchNote> left_; ///< by whoever led before, of pairs that were not seen yet
    Worker worker_;
    std::map<Uuid, Watched> watched_;
    std::map<Uuid, sync::WatchState> told_;
    uint64_t adopted_ = 0;
    SyncOccasions occasions_;
};

} // namespace vh::automation
