#include "Tools/FolderSync/work/WatchMachine.h"

#include <algorithm>
#include <utility>

namespace vh::automation {

using std::chrono::seconds;
using sync::WatchState;

namespace {

constexpr seconds firstPause{15};
constexpr seconds longestPause = std::chrono::minutes(30);
/// After which a pair is tried again that met the sync of another process.
constexpr seconds whenBusy{5};
/// What was stopped is left alone for a while.
constexpr seconds whenStopped = std::chrono::minutes(5);

} // namespace

seconds WatchMachine::pauseAfter(int failures) {
    constexpr int doublings = 7; // beyond which it is the longest anyway
    return std::min(longestPause, firstPause * (1 << std::clamp(failures - 1, 0, doublings)));
}

WatchMachine::WatchMachine(std::optional<int64_t> held) {
    if (held)
        need_ = Held{*held};
}

WatchState WatchMachine::state() const {
    if (const auto* held = std::get_if<Held>(&need_))
        return WatchState::held(held->deletes);
    if (const auto* blocked = std::get_if<Blocked>(&sight_))
        return blocked->by;
    if (!failure_.empty())
        return WatchState::failed(failure_);
    if (const auto* blind = std::get_if<Blind>(&sight_))
        return WatchState::failed(blind->why);
    if (const auto* opening = std::get_if<Opening>(&sight_); opening && !opening->blindness.empty())
        return WatchState::failed(opening->blindness);
    return {};
}

/// Held it stays until a person looks at it, who makes it due.
void WatchMachine::needSync() {
    if (auto* syncing = std::get_if<Syncing>(&need_))
        syncing->again = true;
    else if (!isHeld())
        need_ = Due{};
}

WatchMachine::Todo WatchMachine::syncIfDue(Watcher watcher) const {
    const bool isSeen = std::holds_alternative<Open>(sight_) || std::holds_alternative<Blind>(sight_);
    return {.watcher = watcher, .sync = isSeen && needs<Due>()};
}

WatchMachine::Todo WatchMachine::look(bool catchUp) {
    if (catchUp)
        needSync();
    if (looking_ != Looking::no) {
        looking_ = Looking::again;
        return {};
    }
    looking_ = Looking::once;
    return {.look = true};
}

WatchMachine::Todo WatchMachine::timePasses() {
    return look(std::holds_alternative<Blind>(sight_) && !needs<Pausing>());
}

WatchMachine::Todo WatchMachine::looked(const std::optional<WatchState>& blocker) {
    if (std::exchange(looking_, Looking::no) == Looking::again)
        return look(false);
    if (blocker)
        return block(*blocker);
    if (std::holds_alternative<Opening>(sight_))
        return {};
    if (std::holds_alternative<Open>(sight_))
        return syncIfDue();
    const auto* blind = std::get_if<Blind>(&sight_);
    sight_ = Opening{blind ? blind->why : std::string()};
    return {.watcher = Watcher::start};
}

/// Nobody sees what changes until it is back.
WatchMachine::Todo WatchMachine::block(const WatchState& by) {
    sight_ = Blocked{by};
    forgetFailures();
    needSync();
    return {.watcher = Watcher::drop};
}

WatchMachine::Todo WatchMachine::watcherStarted() {
    sight_ = Open{};
    return syncIfDue();
}

WatchMachine::Todo WatchMachine::watcherFailed(std::string why) {
    const auto* opening = std::get_if<Opening>(&sight_);
    if (!opening || opening->blindness.empty()) // what it saw last, it did not tell
        needSync();
    sight_ = Blind{std::move(why)};
    return syncIfDue(Watcher::drop);
}

WatchMachine::Todo WatchMachine::rootChanged() {
    sight_ = Lost{};
    Todo todo = look(true);
    todo.watcher = Watcher::drop;
    return todo;
}

WatchMachine::Todo WatchMachine::changed() {
    needSync();
    return syncIfDue();
}

WatchMachine::Todo WatchMachine::retryComes() {
    return needs<Pausing>() ? changed() : Todo{};
}

WatchMachine::Todo WatchMachine::began() {
    if (!isHeld())
        need_ = Syncing{};
    return {};
}

WatchMachine::Todo WatchMachine::approved() {
    if (!isHeld())
        return {};
    need_ = Due{};
    return look(false);
}

void WatchMachine::forgetFailures() {
    failure_.clear();
    failures_ = 0;
}

WatchMachine::Todo WatchMachine::pause(seconds time) {
    need_ = Pausing{};
    return {.retry = time};
}

WatchMachine::Todo WatchMachine::ended(const SyncJobResult& result, bool isOwn) {
    using End = SyncJobResult::End;
    const bool isOfThis = isOwn && needs<Syncing>();
    if (result.end == End::blocked) {
        if (isOfThis)
            need_ = Due{};
        return block(result.state.value());
    }
    if (result.end == End::held) {
        forgetFailures();
        need_ = Held{result.state ? result.state->deletes : 0};
        return {};
    }
    return isOfThis ? ownEnded(result) : otherEnded(result);
}

WatchMachine::Todo WatchMachine::ownEnded(const SyncJobResult& result) {
    using End = SyncJobResult::End;
    const bool again = std::get<Syncing>(need_).again;
    if (result.end == End::busy)
        return pause(whenBusy);
    if (result.result.stopped) {
        return pause(std::max(whenStopped, pauseAfter(++failures_)));
    }
    if (result.end == End::failed || !result.result.faults.empty()) {
        failure_ = result.message;
        ++failures_;
        return pause(again ? firstPause : pauseAfter(failures_));
    }
    forgetFailures();
    need_ = InStep{};
    return again ? changed() : Todo{};
}

/// What it needed before, it may still need: somebody's plan may be older.
WatchMachine::Todo WatchMachine::otherEnded(const SyncJobResult& result) {
    using End = SyncJobResult::End;
    if (result.end == End::busy || result.result.stopped)
        return {};
    if (result.end == End::failed || !result.result.faults.empty()) {
        failure_ = result.message;
        if (!needs<InStep>())
            return {};
        return pause(pauseAfter(++failures_));
    }
    forgetFailures();
    if (isHeld() && result.end == End::upToDate) {
        need_ = Due{};
        return syncIfDue();
    }
    return needs<Pausing>() ? changed() : Todo{};
}

} // namespace vh::automation
