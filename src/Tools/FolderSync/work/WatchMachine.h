#pragma once

#include "Tools/FolderSync/WatchState.h"
#include "Tools/FolderSync/work/SyncJob.h"

#include <chrono>
#include <optional>
#include <string>
#include <variant>

namespace vh::automation {

/// How one watched pair goes on: an event comes in, the next state is kept, and what is to be done goes out. Without
/// I/O and clock.
class WatchMachine {
public:
    /// What is seen of the source and its disk.
    struct Unseen {}; ///< never looked at
    struct Lost {};   ///< was watched until its root changed
    struct Blocked {
        sync::WatchState by;
    };
    struct Opening { ///< its watcher starts
        std::string blindness;
    };
    struct Open {};
    struct Blind { ///< cannot be watched: it is compared from time to time
        std::string why;
    };
    using Sight = std::variant<Unseen, Lost, Blocked, Opening, Open, Blind>;

    /// What the destination needs.
    struct InStep {};
    struct Due {}; ///< as soon as it is seen, and its turn comes
    struct Syncing {
        bool again = false; ///< for something has changed since it began
    };
    struct Pausing {}; ///< was tried in vain, until its time comes, or something changes
    struct Held {      ///< until a person looks at it
        int64_t deletes = 0;
    };
    using Need = std::variant<InStep, Due, Syncing, Pausing, Held>;

    enum class Watcher { keep, start, drop };
    struct Todo {
        Watcher watcher = Watcher::keep;
        bool look = false; ///< at its folders
        bool sync = false; ///< when its turn comes; more than once is once
        std::optional<std::chrono::seconds> retry = {};
        bool operator==(const Todo&) const = default;
    };

    /// Needs a sync; or is held, as it was for who led before.
    explicit WatchMachine(std::optional<int64_t> held = {});

    /// With `catchUp` it is synced afterwards whether it changed or not.
    Todo look(bool catchUp);
    /// The regular look.
    Todo timePasses();
    Todo looked(const std::optional<sync::WatchState>& blocker);
    Todo watcherStarted();
    Todo watcherFailed(std::string why);
    Todo rootChanged();
    Todo changed();
    Todo retryComes();
    /// What changes from now on is for the sync after this one.
    Todo began();
    /// Of the sync that began, or of one that somebody else asked for.
    Todo ended(const SyncJobResult& result, bool isOwn);
    /// A person has looked at what it is held for.
    Todo approved();

    bool isKnown() const { return !std::holds_alternative<Unseen>(sight_); }
    bool isBlocked() const { return std::holds_alternative<Blocked>(sight_); }
    bool isHeld() const { return std::holds_alternative<Held>(need_); }
    sync::WatchState state() const;

    /// After so many syncs in vain: from seconds to half an hour.
    static std::chrono::seconds pauseAfter(int failures);

private:
    enum class Looking { no, once, again };

    Todo block(const sync::WatchState& by);
    Todo ownEnded(const SyncJobResult& result);
    Todo otherEnded(const SyncJobResult& result);
    Todo pause(std::chrono::seconds time);
    void needSync();
    void forgetFailures();
    Todo syncIfDue(Watcher watcher = Watcher::keep) const;
    template <class State>
    bool needs() const {
        return std::holds_alternative<State>(need_);
    }

    Sight sight_ = Unseen{};
    Need need_ = Due{};
    Looking looking_ = Looking::no;
    std::string failure_; ///< of the last sync; empty when it went well
    int failures_ = 0;    ///< since one went well
};

} // namespace vh::automation
