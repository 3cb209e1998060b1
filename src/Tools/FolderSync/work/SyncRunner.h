#pragma once

#include "Core/Observers.h"
#include "Tools/FolderSync/SyncPair.h"
#include "Tools/FolderSync/SyncPlan.h"
#include "Tools/FolderSync/WatchState.h"
#include "Tools/FolderSync/work/SyncJob.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vh {
class Desktop;
}

namespace vh::automation {

/// Syncs pairs: those a person starts, and, in the process that leads, the watched ones by themselves. Main thread but
/// for runScheduled.
class SyncRunner {
public:
    SyncRunner(const AutomationDependencies& dependencies, Desktop& desktop);
    ~SyncRunner();
    SyncRunner(const SyncRunner&) = delete;
    SyncRunner& operator=(const SyncRunner&) = delete;

    /// Watches from then on.
    void start();

    std::vector<sync::SyncPair> pairs();
    /// Throw SystemError.
    void put(const sync::SyncPair& pair); ///< new, or in the place of the one with its identifier
    void remove(const Uuid& pair);        ///< the folders stay

    /// A person has seen that there is nothing to do for the pair; it is no longer held.
    void approve(const Uuid& pair);
    /// Carries out a plan that a person has approved; `ended` is called on the main thread. False when another one runs.
    bool apply(sync::SyncPlan plan, const sync::SyncPair& pair, Trigger trigger,
               std::function<void(const SyncJobResult&)> ended = {});
    /// Blocks; any thread.
    RunRecord runScheduled(const sync::SyncPair& pair, Trigger trigger, const RunDetails& details,
                           const JobControl& control);

    struct Running {
        uint64_t run = 0; ///< which, of those of this process
        Uuid pair;
        std::string title;
        int64_t done = 0, total = 0; ///< actions; total 0 while it compares
        int64_t bytes = 0;           ///< copied
        double fraction = 0;         ///< 0 to 1, of actions and bytes together
        std::string current;
        bool isStopping = false;
        std::chrono::steady_clock::time_point since =
            std::chrono::steady_clock::now(); ///< of the first change
    };
    const std::optional<Running>& running() const;
    void stop();

    /// The last one of each pair in this process.
    const std::map<Uuid, SyncJobResult>& results() const;
    /// Of the watched pairs, whichever process watches them.
    std::map<Uuid, sync::WatchState> states() const;
    /// Whether any process watches.
    bool isWatched() const;
    /// Watched pairs that are not healthy.
    size_t needingAttention() const;

    /// Called on the main thread when anything of the above changed.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> f);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh::automation
