#include "Tools/FolderSync/work/SyncRunner.h"

#include "Automation/FolderNews.h"
#include "Platform/Desktop.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "Tools/FolderSync/SyncRecord.h"
#include "Tools/FolderSync/work/SyncWatch.h"

#include <algorithm>
#include <atomic>
#include <filesystem>

namespace vh::automation {

using sync::SyncPair;
using sync::WatchState;

using Ended = std::function<void(const SyncJobResult&)>;

struct SyncRunner::State {
    State(const AutomationDependencies& w, Desktop& d)
        : dependencies(w), desktop(d), store(sync::SyncPairStore::fileIn(w.folders)), file(w.folders),
          worker(w.loop) {}

    void followNews();
    void newsCame();
    void pairsChanged();
    void request(const Uuid& pair);
    void runNext();
    void begin(SyncJobRequest request, const Ended& ended);
    void show(Running first, const CancelToken& cancel);
    void progressed(Running latest);
    void finished(uint64_t run, const SyncJobRequest& request, const SyncJobResult& result,
                  const Ended& ended);
    void notifyHeld(const SyncJobResult& result);
    /// Adds to a request that its progress is shown, and says which run it is. Any thread.
    uint64_t showProgress(SyncJobRequest& request, const CancelToken& cancel);

    const AutomationDependencies& dependencies;
    Desktop& desktop;
    sync::SyncPairStore store;
    SyncWatchFile file;
    std::vector<SyncPair> known;    ///< as the watch and the observers know them
    std::vector<Uuid> waiting;      ///< for the end of what runs, each once
    std::optional<Running> running; ///< the only truth of what does
    std::atomic<uint64_t> runs = 0; ///< that were begun
    CancelToken cancel;             ///< of what runs
    std::map<Uuid, SyncJobResult> results;
    Observers<> observers;
    std::optional<FolderNews> news;
    std::optional<SyncWatch> watch;
    Worker worker; ///< its threads use what stands above
};

/// Notices what other processes do to the pairs, and what the one that leads says of them.
void SyncRunner::State::followNews() {
    if (!news)
        news.emplace(dependencies.loop,
                     std::filesystem::path(sync::SyncPairStore::fileIn(dependencies.folders)).parent_path(),
                     [this] { newsCame(); });
}

void SyncRunner::State::newsCame() {
    if (store.load() != known)
        pairsChanged();
    else if (watch)
        watch->takeApprovals();
    else
        observers.tell();
}

void SyncRunner::State::pairsChanged() {
    known = store.load();
    if (watch)
        watch->reconcile(false);
    observers.tell();
}

void SyncRunner::State::request(const Uuid& pair) {
    if (std::ranges::find(waiting, pair) == waiting.end())
        waiting.push_back(pair);
    runNext();
}

void SyncRunner::State::runNext() {
    while (!running && !waiting.empty()) {
        const Uuid pair = waiting.front();
        waiting.erase(waiting.begin());
        const std::vector<SyncPair> pairs = store.load();
        const auto found = std::ranges::find(pairs, pair, &SyncPair::id);
        if (found == pairs.end() || !found->watch)
            continue;
        if (watch)
            watch->begins(pair);
        begin({.pair = *found, .plan = {}, .trigger = Trigger::newFiles, .details = {}, .isAttended = false},
              {});
    }
}

void SyncRunner::State::begin(SyncJobRequest request, const Ended& ended) {
    const JobControl control;
    const uint64_t run = showProgress(request, control.cancel);
    show({.run = run, .pair = request.pair.id, .title = request.pair.title()}, control.cancel);
    // A plan may be large: the run alone has it, and lets go of it when it can.
    const auto plan = std::make_shared<std::optional<sync::SyncPlan>>(std::exchange(request.plan, {}));
    const auto result = std::make_shared<SyncJobResult>();
    worker.run(
        [this, request, plan, control, result] {
            SyncJobRequest whole = request;
            whole.plan.swap(*plan);
            *result = runSync(std::move(whole), dependencies, control);
        },
        [this, run, request, result, ended] { finished(run, request, *result, ended); });
    observers.tell();
}

void SyncRunner::State::show(Running first, const CancelToken& token) {
    running = std::move(first);
    cancel = token;
}

uint64_t SyncRunner::State::showProgress(SyncJobRequest& request, const CancelToken& token) {
    const uint64_t run = ++runs;
    request.progress = [this, run, id = request.pair.id, title = request.pair.title(),
                        token](const SyncJobProgress& at) {
        const Running latest{.run = run,
                             .pair = id,
                             .title = title,
                             .done = at.done,
                             .total = at.total,
                             .bytes = at.bytes,
                             .fraction = at.fraction(),
                             .current = std::string(at.current)};
        worker.post([this, latest, token] {
            if (!running)
                show(latest, token); // one that a schedule began
            if (running->run == latest.run)
                progressed(latest);
        });
    };
    return run;
}

void SyncRunner::State::progressed(Running latest) {
    latest.isStopping = running->isStopping;
    if (running->total > 0) // the time of comparing does not count
        latest.since = running->since;
    running = std::move(latest);
    observers.tell();
}

void SyncRunner::State::finished(uint64_t run, const SyncJobRequest& request, const SyncJobResult& result,
                                 const Ended& ended) {
    if (running && running->run == run)
        running.reset();
    if (result.end != SyncJobResult::End::busy)
        results.insert_or_assign(request.pair.id, result);
    const bool isNewlyHeld = watch ? watch->ended(request, result) : result.end == SyncJobResult::End::held;
    if (isNewlyHeld)
        notifyHeld(result);
    if (ended)
        ended(result);
    runNext();
    pairsChanged();
}

void SyncRunner::State::notifyHeld(const SyncJobResult& result) {
    try {
        desktop.notify(dependencies.texts().text("sidebar.varnholt"), result.message);
    } catch (const std::runtime_error&) {
        // Nobody sits before this computer; the pair says so until somebody does.
    }
}

SyncRunner::SyncRunner(const AutomationDependencies& dependencies, Desktop& desktop)
    : state_(std::make_unique<State>(dependencies, desktop)) {}

SyncRunner::~SyncRunner() {
    state_->cancel.cancel();
}

void SyncRunner::start() {
    State& s = *state_;
    if (s.watch)
        return;
    s.followNews();
    s.watch.emplace(s.dependencies, s.file,
                    SyncWatch::Owner{.pairs = [&s] { return s.store.load(); },
                                     .sync = [&s](const Uuid& pair) { s.request(pair); },
                                     .drop = [&s](const Uuid& pair) { std::erase(s.waiting, pair); },
                                     .changed =
                                         [&s] {
                                             s.observers.tell();
                                         }});
    s.known = s.store.load();
    s.watch->reconcile(true);
}

std::vector<SyncPair> SyncRunner::pairs() {
    return state_->store.load();
}

void SyncRunner::put(const SyncPair& pair) {
    state_->store.change([&](std::vector<SyncPair>& pairs) {
        const auto old = std::ranges::find(pairs, pair.id, &SyncPair::id);
        if (old == pairs.end()) {
            pairs.push_back(pair);
            return;
        }
        SyncPair changed = pair;
        if (old->source == pair.source && old->destination == pair.destination)
            changed.lastSync = old->lastSync; // a sync may have ended since the caller read it
        *old = std::move(changed);
    });
    state_->pairsChanged();
}

void SyncRunner::remove(const Uuid& pair) {
    state_->store.change([&](std::vector<SyncPair>& pairs) {
        std::erase_if(pairs, [&](const SyncPair& each) { return each.id == pair; });
    });
    state_->results.erase(pair);
    state_->pairsChanged();
}

void SyncRunner::approve(const Uuid& pair) {
    state_->file.approve(pair);
}

bool SyncRunner::apply(sync::SyncPlan plan, const SyncPair& pair, Trigger trigger, Ended ended) {
    State& s = *state_;
    if (s.running)
        return false;
    s.begin({.pair = pair, .plan = std::move(plan), .trigger = trigger, .details = {}}, ended);
    return true;
}

RunRecord SyncRunner::runScheduled(const SyncPair& pair, Trigger trigger, const RunDetails& details,
                                   const JobControl& control) {
    State& s = *state_;
    SyncJobRequest request{.pair = pair,
                           .plan = {},
                           .trigger = trigger,
                           .details = details,
                           .isAttended = false,
                           .logsNothingToDo = true};
    const uint64_t run = s.showProgress(request, control.cancel);
    const SyncJobResult result = runSync(request, s.dependencies, control);
    s.worker.post([&s, run, request, result] { s.finished(run, request, result, {}); });
    return result.record.value_or(RunRecord{
        .id = Uuid::random(), .toolID = sync::toolID, .outcome = Outcome::failed, .summary = result.message});
}

const std::optional<SyncRunner::Running>& SyncRunner::running() const {
    return state_->running;
}

void SyncRunner::stop() {
    State& s = *state_;
    if (!s.running)
        return;
    s.cancel.cancel();
    s.running->isStopping = true;
    s.observers.tell();
}

const std::map<Uuid, SyncJobResult>& SyncRunner::results() const {
    return state_->results;
}

std::map<Uuid, WatchState> SyncRunner::states() const {
    return state_->watch ? state_->watch->states() : state_->file.states();
}

bool SyncRunner::isWatched() const {
    return state_->watch || state_->file.isLed();
}

size_t SyncRunner::needingAttention() const {
    return static_cast<size_t>(
        std::ranges::count_if(states(), [](const auto& each) { return !each.second.isHealthy(); }));
}

std::shared_ptr<void> SyncRunner::observe(std::function<void()> f) {
    auto token = state_->observers.add(std::move(f));
    state_->followNews();
    return token;
}

} // namespace vh::automation
