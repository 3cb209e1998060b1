#include "Tools/FolderSync/work/SyncWatch.h"

#include "Platform/SystemError.h"

#include <algorithm>
#include <chrono>

namespace vh::automation {

using sync::SyncPair;
using sync::WatchState;

namespace {

constexpr std::chrono::seconds debounce{2};
/// After which a pair is tried again that met the sync of another process.
constexpr std::chrono::seconds whenBusy{5};

bool isWatched(const SyncPair& pair) {
    return pair.watch && !pair.source.empty() && !pair.destination.empty();
}

/// Whether a sync of both would do the same.
bool isAlike(const SyncPair& a, const SyncPair& b) {
    return a.source == b.source && a.destination == b.destination &&
           a.deleteExtraneous == b.deleteExtraneous && a.compareContents == b.compareContents;
}

} // namespace

WatchState SyncWatch::Watched::state() const {
    if (hold)
        return WatchState::held(*hold);
    if (!syncFailure.empty())
        return WatchState::failed(syncFailure);
    if (blocker)
        return *blocker;
    if (!watchFailure.empty())
        return WatchState::failed(watchFailure);
    return {};
}

SyncWatch::SyncWatch(const AutomationWorld& world, SyncWatchFile& file, Owner owner)
    : world_(world), file_(file), owner_(std::move(owner)), worker_(world.loop),
      occasions_(world.loop, world.clock,
                 {.onWake = [this] { reconcile(true); },
                  .onMounts = [this](const auto& mounted,
                                     const auto& unmounted) { mountsChanged(mounted, unmounted); },
                  .onTime =
                      [this] {
                          lookWithTime();
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
    for (auto& [id, each] : watched_)
        look(each, catchUp);
    publish();
}

void SyncWatch::adopt(const SyncPair& pair) {
    const auto [at, isNew] = watched_.try_emplace(pair.id);
    Watched& watched = at->second;
    if (isNew || !isAlike(watched.pair, pair)) {
        watched = Watched();
        watched.isDirty = true;
    }
    watched.pair = pair;
    if (const auto left = left_.find(pair.id); left != left_.end() && isAlike(left->second.pair, pair)) {
        const SyncWatchNote& note = left->second;
        if (note.state.kind == WatchState::Kind::held)
            watched.hold = note.state.deletes;
        watched.mounts = {note.sourceMount, note.destinationMount};
    }
}

void SyncWatch::look(Watched& watched, bool catchUp) {
    watched.catchesUp = watched.catchesUp || catchUp;
    if (watched.look != 0) {
        watched.looksAgain = true;
        return;
    }
    watched.look = ++looks_;
    const auto found = std::make_shared<SyncLook>();
    worker_.run([pair = watched.pair, mounts = watched.mounts, found] { *found = lookAt(pair, mounts); },
                [this, id = watched.pair.id, number = watched.look, found] { looked(id, number, *found); });
}

void SyncWatch::looked(const Uuid& pair, uint64_t number, const SyncLook& seen) {
    Watched* const watched = find(pair);
    if (!watched || watched->look != number) // it was of the pair as it was before
        return;
    watched->look = 0;
    if (std::exchange(watched->looksAgain, false)) {
        look(*watched, false);
        return;
    }
    watched->isKnown = true;
    watched->blocker = seen.blocker;
    watched->mounts = seen.mounts;
    if (seen.blocker) {
        watched->watcher.reset();
        watched->watchFailure.clear();
        watched->isDirty = true; // nobody sees what changes until it is back
    } else if (!watched->watcher) {
        startWatcher(*watched);
    } else if (watched->watcher->isRunning()) {
        askForSync(*watched);
    }
    publish();
}

/// A sync writes down what it does: in a source that holds our own folder, that must not lead to the next.
void SyncWatch::startWatcher(Watched& watched) {
    const Uuid id = watched.pair.id;
    watched.watcher = std::make_unique<FolderWatcher>(
        world_.loop, worker_, watched.pair.source, world_.folders.data + "/Varnholt", debounce,
        FolderWatcher::Events{.onStarted = [this, id] { started(id); },
                              .onChange = [this, id] { changed(id); },
                              .onRootChanged = [this, id] { rootChanged(id); },
                              .onFailed =
                                  [this, id](const SystemError& why) {
                                      failed(id, why);
                                  }});
}

void SyncWatch::started(const Uuid& pair) {
    Watched& watched = *find(pair);
    watched.watchFailure.clear();
    askForSync(watched);
    publish();
}

void SyncWatch::changed(const Uuid& pair) {
    Watched& watched = *find(pair);
    watched.isDirty = true;
    askForSync(watched);
}

void SyncWatch::rootChanged(const Uuid& pair) {
    Watched& watched = *find(pair);
    watched.watcher.reset();
    watched.isDirty = true;
    look(watched, false);
}

/// What cannot be watched is compared from time to time instead.
void SyncWatch::failed(const Uuid& pair, const SystemError& why) {
    Watched& watched = *find(pair);
    watched.watcher.reset();
    watched.isDirty = watched.isDirty || watched.watchFailure.empty(); // what it saw last, it did not tell
    const Texts texts = world_.texts();
    if (const auto* reached = dynamic_cast<const WatchLimitReached*>(&why))
        watched.watchFailure =
            texts.text("folder-sync.watch-limit", {{"folders", reached->limit().folders},
                                                   {"limit", reached->limit().limit},
                                                   {"setting", reached->limit().setting()}});
    else
        watched.watchFailure = texts.text("folder-sync.watcher-failed", {{"reason", why.what()}});
    askForSync(watched);
    publish();
}

void SyncWatch::askForSync(Watched& watched) {
    if (watched.hold || !(std::exchange(watched.catchesUp, false) || watched.isDirty))
        return;
    watched.isDirty = true;
    owner_.sync(watched.pair.id);
}

void SyncWatch::takeApprovals() {
    for (auto& [id, each] : watched_)
        if (each.hold && file_.takeApproval(id)) {
            each.hold.reset();
            each.isDirty = true; // something may have changed while it was held
            look(each, false);
            publish();
        }
}

void SyncWatch::mountsChanged(const std::set<std::string>& mounted, const std::set<std::string>& unmounted) {
    for (auto& [id, each] : watched_) {
        const auto concerns = [&pair = each.pair, &mounts = each.mounts](const std::string& point) {
            return point == mounts.source || point == mounts.destination || isIn(pair.source, point) ||
                   isIn(pair.destination, point) || isIn(point, pair.source) || isIn(point, pair.destination);
        };
        const bool comes = std::ranges::any_of(mounted, concerns) || (each.blocker && !mounted.empty());
        if (comes || std::ranges::any_of(unmounted, concerns))
            look(each, comes);
    }
}

void SyncWatch::lookWithTime() {
    for (auto& [id, each] : watched_)
        each.catchesUp = each.catchesUp || !each.watchFailure.empty();
    reconcile(false);
}

void SyncWatch::begins(const Uuid& pair) {
    if (Watched* const watched = find(pair))
        watched->isDirty = false;
}

bool SyncWatch::ended(const SyncJobRequest& request, const SyncJobResult& result) {
    using End = SyncJobResult::End;
    Watched* const watched = find(request.pair.id);
    if (!watched)
        return result.end == End::held;
    const bool wasHeld = watched->hold.has_value();
    switch (result.end) {
    case End::done:
        if (!result.result.stopped)
            watched->syncFailure = result.result.errors.empty() ? "" : result.message;
        break;
    case End::upToDate:
        watched->hold.reset();
        watched->syncFailure.clear();
        break;
    case End::held:
        file_.takeApproval(request.pair.id); // one from before
        watched->hold = result.state ? result.state->deletes : 0;
        watched->syncFailure.clear();
        break;
    case End::failed:
        watched->syncFailure = result.message;
        break;
    case End::blocked:
        watched->blocker = result.state;
        watched->isDirty = true;
        break;
    case End::busy:
        if (!request.isAttended)
            watched->retry = world_.loop.after(whenBusy, [this, id = request.pair.id] { changed(id); });
        break;
    }
    publish();
    return watched->hold && !wasHeld;
}

std::map<Uuid, WatchState> SyncWatch::states() const {
    std::map<Uuid, WatchState> states;
    for (const auto& [id, each] : watched_)
        if (each.isKnown)
            states.emplace(id, each.state());
    return states;
}

void SyncWatch::publish() {
    std::vector<SyncWatchNote> notes;
    for (const auto& [id, each] : watched_)
        if (each.isKnown || each.hold || !each.mounts.source.empty())
            notes.push_back({each.pair, each.state(), each.mounts.source, each.mounts.destination});
    file_.write(notes);
    if (std::map<Uuid, WatchState> now = states(); now != told_) {
        told_ = std::move(now);
        owner_.changed();
    }
}

} // namespace vh::automation
