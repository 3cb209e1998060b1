#include "Tools/FolderSync/work/SyncWatch.h"

#include "Platform/PathParts.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <chrono>

namespace vh::automation {

using sync::SyncPair;
using sync::WatchState;

namespace {

constexpr std::chrono::seconds debounce{2};

bool isWatched(const SyncPair& pair) {
    return pair.watch && !pair.source.empty() && !pair.destination.empty();
}

/// Whether a sync of both would do the same.
bool isAlike(const SyncPair& a, const SyncPair& b) {
    return a.source == b.source && a.destination == b.destination &&
           a.deleteExtraneous == b.deleteExtraneous && a.compareContents == b.compareContents;
}

} // namespace

SyncWatch::SyncWatch(const AutomationDependencies& dependencies, SyncWatchFile& file, Owner owner)
    : dependencies_(dependencies), file_(file), owner_(std::move(owner)), worker_(dependencies.loop),
      occasions_(dependencies.loop, dependencies.clock,
                 {.onWake = [this] { reconcile(true); },
                  .onMounts = [this](const auto& mounted,
                                     const auto& unmounted) { mountsChanged(mounted, unmounted); },
                  .onTime =
                      [this] {
                          timePasses();
                      }}) {
    for (SyncWatchNote& each : file_.notes())
        left_.insert_or_assign(each.pair.id, std::move(each));
}

SyncWatch::~SyncWatch() = default;

SyncWatch::Watched* SyncWatch::find(const Uuid& pair) {
    const auto found = watched_.find(pair);
    return found == watched_.end() ? nullptr : &found->second;
}

void SyncWatch::reconcile(bool catchUp) {
    adoptAll();
    for (auto& [id, each] : watched_)
        carryOut(each, each.machine.look(catchUp));
    publish();
}

void SyncWatch::timePasses() {
    adoptAll();
    for (auto& [id, each] : watched_)
        carryOut(each, each.machine.timePasses());
    publish();
}

void SyncWatch::adoptAll() {
    const std::vector<SyncPair> pairs = owner_.pairs();
    std::erase_if(watched_, [&](const auto& each) {
        const auto now = std::ranges::find(pairs, each.first, &SyncPair::id);
        if (now != pairs.end() && isWatched(*now))
            return false;
        owner_.drop(each.first);
        return true;
    });
    for (const SyncPair& each : pairs)
        if (isWatched(each))
            adopt(each);
    left_.clear();
    takeApprovals();
}

void SyncWatch::adopt(const SyncPair& pair) {
    if (Watched* const watched = find(pair.id); watched && isAlike(watched->pair, pair)) {
        watched->pair = pair;
        return;
    }
    std::optional<int64_t> held;
    SyncMounts mounts;
    if (const auto left = left_.find(pair.id); left != left_.end() && isAlike(left->second.pair, pair)) {
        const SyncWatchNote& note = left->second;
        if (note.state.kind == WatchState::Kind::held)
            held = note.state.deletes;
        mounts = {note.sourceMount, note.destinationMount};
    }
    watched_.insert_or_assign(
        pair.id,
        Watched{.pair = pair, .machine = WatchMachine(held), .number = ++adopted_, .mounts = mounts});
}

void SyncWatch::carryOut(Watched& watched, const WatchMachine::Todo& todo) {
    const Uuid id = watched.pair.id;
    if (todo.watcher == WatchMachine::Watcher::drop)
        watched.watcher.reset();
    else if (todo.watcher == WatchMachine::Watcher::start)
        startWatcher(watched);
    if (todo.retry)
        watched.retry =
            dependencies_.loop.after(*todo.retry, [this, id] { tell(id, &WatchMachine::retryComes); });
    if (todo.look)
        look(watched);
    if (todo.sync)
        owner_.sync(id);
}

void SyncWatch::look(Watched& watched) {
    const auto found = std::make_shared<SyncLook>();
    worker_.run([pair = watched.pair, mounts = watched.mounts, found] { *found = lookAt(pair, mounts); },
                [this, id = watched.pair.id, number = watched.number, found] { looked(id, number, *found); });
}

void SyncWatch::looked(const Uuid& pair, uint64_t number, const SyncLook& seen) {
    Watched* const watched = find(pair);
    if (!watched || watched->number != number)
        return;
    watched->mounts = seen.mounts;
    carryOut(*watched, watched->machine.looked(seen.blocker));
    publish();
}

/// A sync writes down what it does: in a source that holds our own folder, that must not lead to the next.
void SyncWatch::startWatcher(Watched& watched) {
    const Uuid id = watched.pair.id;
    watched.watcher = std::make_unique<FolderWatcher>(
        dependencies_.loop, worker_, watched.pair.source, dependencies_.folders.data + "/Varnholt", debounce,
        FolderWatcher::Events{.onStarted = [this, id] { tell(id, &WatchMachine::watcherStarted); },
                              .onChange = [this, id] { tell(id, &WatchMachine::changed); },
                              .onRootChanged = [this, id] { tell(id, &WatchMachine::rootChanged); },
                              .onFailed =
                                  [this, id](const SystemError& why) {
                                      tell(id, &WatchMachine::watcherFailed, textOf(why));
                                  }});
}

template <class... Arguments, class... Given>
void SyncWatch::tell(const Uuid& pair, WatchMachine::Todo (WatchMachine::*event)(Arguments...),
                     Given&&... given) {
    Watched& watched = *find(pair); // a watcher and a timer go with their pair
    carryOut(watched, (watched.machine.*event)(std::forward<Given>(given)...));
    publish();
}

std::string SyncWatch::textOf(const SystemError& why) const {
    const Texts texts = dependencies_.texts();
    if (const auto* reached = dynamic_cast<const WatchLimitReached*>(&why))
        return texts.text("folder-sync.watch-limit", {{"folders", reached->limit().folders},
                                                      {"limit", reached->limit().limit},
                                                      {"setting", reached->limit().setting()}});
    return texts.text("folder-sync.watcher-failed", {{"reason", why.what()}});
}

void SyncWatch::takeApprovals() {
    for (auto& [id, each] : watched_)
        if (each.machine.isHeld() && file_.takeApproval(id)) {
            carryOut(each, each.machine.approved());
            publish();
        }
}

void SyncWatch::mountsChanged(const std::set<std::string>& mounted, const std::set<std::string>& unmounted) {
    for (auto& [id, each] : watched_) {
        const auto concerns = [&pair = each.pair, &mounts = each.mounts](const std::string& point) {
            return point == mounts.source || point == mounts.destination || isAtOrBelow(pair.source, point) ||
                   isAtOrBelow(pair.destination, point) || isAtOrBelow(point, pair.source) ||
                   isAtOrBelow(point, pair.destination);
        };
        const bool comes =
            std::ranges::any_of(mounted, concerns) || (each.machine.isBlocked() && !mounted.empty());
        if (comes || std::ranges::any_of(unmounted, concerns))
            carryOut(each, each.machine.look(comes));
    }
}

void SyncWatch::begins(const Uuid& pair) {
    if (Watched* const watched = find(pair))
        carryOut(*watched, watched->machine.began());
}

bool SyncWatch::ended(const SyncJobRequest& request, const SyncJobResult& result) {
    const bool isHeldNow = result.end == SyncJobResult::End::held;
    Watched* const watched = find(request.pair.id);
    if (!watched || !isAlike(watched->pair, request.pair))
        return isHeldNow;
    if (isHeldNow)
        file_.takeApproval(request.pair.id); // one from before
    const bool wasHeld = watched->machine.isHeld();
    const bool isOwn = !request.isAttended && !request.logsNothingToDo;
    carryOut(*watched, watched->machine.ended(result, isOwn));
    publish();
    return isHeldNow && !wasHeld;
}

std::map<Uuid, WatchState> SyncWatch::states() const {
    std::map<Uuid, WatchState> states;
    for (const auto& [id, each] : watched_)
        if (each.machine.isKnown())
            states.emplace(id, each.machine.state());
    return states;
}

void SyncWatch::publish() {
    std::vector<SyncWatchNote> notes;
    for (const auto& [id, each] : watched_)
        if (each.machine.isKnown() || each.machine.isHeld() || !each.mounts.source.empty())
            notes.push_back({each.pair, each.machine.state(), each.mounts.source, each.mounts.destination});
    file_.write(notes);
    if (std::map<Uuid, WatchState> now = states(); now != told_) {
        told_ = std::move(now);
        owner_.changed();
    }
}

} // namespace vh::automation
