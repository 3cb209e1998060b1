#include "Tools/FolderSync/work/SyncJob.h"

#include "Core/CleanState.h"
#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "Core/RunJournal.h"
#include "Core/Throttle.h"
#include "Core/ToolTexts.h"
#include "Platform/FileLock.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"
#include "Tools/FolderSync/AutoSyncGuard.h"
#include "Tools/FolderSync/SyncEngine.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "Tools/FolderSync/SyncRecord.h"
#include "Tools/FolderSync/work/SyncWatchFile.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

namespace vh::automation {

using namespace sync;

namespace {

using End = SyncJobResult::End;
using Kind = SyncAction::Kind;

/// What is done of a plan, while it is being done: told to who looks, and written down.
class Tracking {
public:
    Tracking(const SyncPlan& plan, const SyncJobRequest& request, const JobControl& control,
             RunJournal& journal)
        : request_(request), control_(control), journal_(journal),
          destination_((std::filesystem::path(request.pair.destination) / "").string()) {
        progress_.total = static_cast<int64_t>(plan.actions.size());
        progress_.bytesTotal = plan.bytes();
    }

    SyncEngine::Steering steering() {
        return {.progress = {},
                .shouldContinue = [this] { return !control_.cancel.isCancelled(); },
                .copied = [this](int64_t bytes) { more(bytes); },
                .removing = [this](const std::string& path) { removing(path); },
                .ended =
                    [this](const SyncEngine::Step& step) {
                        ended(step);
                    }};
    }
    /// Writes down what is not yet.
    void flush() {
        if (!rows_.empty())
            journal_.add(std::exchange(rows_, {}));
    }
    int64_t bytesCopied() const { return bytesCopied_; }

private:
    void removing(const std::string& path);
    void ended(const SyncEngine::Step& step);
    void write(const SyncEngine::Step& step);
    void more(int64_t bytes);
    void report(std::string_view current);

    const SyncJobRequest& request_;
    const JobControl& control_;
    RunJournal& journal_;
    const std::string destination_; ///< with a slash
    SyncJobProgress progress_;
    int64_t bytesEnded_ = 0; ///< of all actions that have ended
    int64_t bytesCopied_ = 0;
    Throttle reports_;
    std::optional<std::string> removing_;
    std::vector<RunFileRow> rows_;
};

void Tracking::removing(const std::string& path) {
    journal_.doing({.path = path, .place = {}, .bytes = {}, .state = cleanState::trash, .checksum = {}});
    removing_ = path;
}

void Tracking::ended(const SyncEngine::Step& step) {
    write(step);
    const SyncAction& action = step.action;
    if (action.kind != Kind::remove) {
        bytesEnded_ += action.bytes;
        bytesCopied_ += step.isFailed ? 0 : action.bytes;
    }
    progress_.bytes = bytesEnded_;
    ++progress_.done;
    report(action.relativePath);
}

/// What is removed was announced and can be put back; of what is copied a kill may leave some unlisted.
void Tracking::write(const SyncEngine::Step& step) {
    constexpr size_t rowsAtOnce = 256;
    const SyncAction& action = step.action;
    const bool isRemoval = action.kind == Kind::remove;
    if (removing_) {
        const char* const left = isRemoval ? cleanState::failed : cleanState::inPlace;
        journal_.done({*removing_,
                       step.landed,
                       isRemoval ? std::optional(action.bytes) : std::nullopt,
                       step.landed ? cleanState::trash : left,
                       {}});
        removing_.reset();
        if (isRemoval)
            return;
    }
    const char* const state = step.isFailed                 ? cleanState::failed
                              : isRemoval                   ? cleanState::trash
                              : action.kind == Kind::update ? cleanState::changed
                                                            : cleanState::added;
    rows_.push_back({destination_ + action.relativePath, {}, action.bytes, state, {}});
    if (rows_.size() >= rowsAtOnce)
        flush();
}

void Tracking::more(int64_t bytes) {
    progress_.bytes += bytes;
    report({});
}

void Tracking::report(std::string_view current) {
    if (!reports_.isDue())
        return;
    if (!current.empty())
        progress_.current = current;
    control_.report(progress_.fraction(), progress_.current);
    if (request_.progress)
        request_.progress(progress_);
}

/// One sync between asking for its turn and its end.
class SyncRun {
public:
    SyncRun(SyncJobRequest request, const AutomationDependencies& dependencies, const JobControl& control)
        : request_(std::move(request)), dependencies_(dependencies), control_(control),
          texts_(dependencies.texts()), store_(SyncPairStore::fileIn(dependencies.folders)),
          details_(request_.details) {
        details_.merge(detailsOf(request_.pair));
    }

    SyncJobResult run() {
        try {
            const FileLock turn = takeTurn();
            if (!turn)
                return end(End::busy, {"folder-sync.another-sync-running", {}});
            return runInTurn();
        } catch (const Cancelled&) {
            return stopBefore();
        } catch (const SyncError& error) {
            return fail(messageOf(error));
        } catch (const std::exception& error) {
            return fail(vh::messageOf(error));
        }
    }

private:
    FileLock takeTurn() const;
    SyncJobResult runInTurn();
    std::optional<WatchState> blocker() const;
    SyncJobResult block(const WatchState& state);
    SyncJobResult hold(const SyncPlan& plan);
    SyncJobResult perform(SyncPlan plan);
    SyncJobResult stopBefore();
    SyncJobResult fail(const Message& why);
    void noteDone();

    SyncJobResult end(End how, const Message& message) const {
        SyncJobResult result;
        result.end = how;
        result.message = worded(message, texts_);
        return result;
    }
    SyncJobResult logged(SyncJobResult result, Outcome outcome, const Messages& sentences,
                         const RunMetrics& metrics = {}) {
        result.record = dependencies_.runs.log.begin(toolID, request_.trigger, details_)
                            ->finish(outcome, RunWords(sentences, texts_), metrics);
        result.message = result.record->summary;
        return result;
    }
    Message titled(const char* key) const { return {key, {{"name", printable(request_.pair.title())}}}; }

    SyncJobRequest request_;
    const AutomationDependencies& dependencies_;
    const JobControl& control_;
    const Texts texts_;
    SyncPairStore store_;
    RunDetails details_;
};

FileLock SyncRun::takeTurn() const {
    constexpr std::chrono::milliseconds pause{200};
    const auto file =
        std::filesystem::path(SyncPairStore::fileIn(dependencies_.folders)).replace_filename("sync.lock");
    makeFolders(file.parent_path());
    FileLock turn = FileLock::tryLock(file);
    while (!turn && request_.logsNothingToDo) {
        control_.throwIfCancelled();
        control_.report(-1, texts_.text("folder-sync.waiting-for-another"));
        std::this_thread::sleep_for(pause);
        if (FileLock next = FileLock::tryLock(file))
            return next;
    }
    return turn;
}

SyncJobResult SyncRun::runInTurn() {
    control_.throwIfCancelled();
    if (const auto state = blocker())
        return block(*state);
    if (request_.plan)
        return perform(std::move(*request_.plan));
    control_.report(-1, worded(titled("folder-sync.comparing"), texts_));
    SyncPlan plan = SyncEngine::plan(request_.pair, control_.cancel);
    if (const auto state = blocker()) // of a disk that went meanwhile an empty folder is left
        return block(*state);
    if (plan.isEmpty()) {
        const Message said = titled("folder-sync.up-to-date-line");
        SyncJobResult result = end(End::upToDate, said);
        return request_.logsNothingToDo ? logged(std::move(result), Outcome::success, {said}) : result;
    }
    if (!request_.isAttended && AutoSyncGuard::holds(plan))
        return hold(plan);
    return perform(std::move(plan));
}

/// A person who looks at the plan may sync what was on a disk before.
std::optional<WatchState> SyncRun::blocker() const {
    const SyncMounts before =
        request_.isAttended ? SyncMounts() : SyncWatchFile(dependencies_.folders).mountsOf(request_.pair);
    return lookAt(request_.pair, before).blocker;
}

SyncJobResult SyncRun::block(const WatchState& state) {
    const Message reason = messageOf(state, request_.pair);
    SyncJobResult result = end(End::blocked, reason);
    result.state = state;
    if (!request_.logsNothingToDo)
        return result;
    return logged(std::move(result), Outcome::warning, {titled("folder-sync.not-available-line"), reason});
}

SyncJobResult SyncRun::hold(const SyncPlan& plan) {
    const WatchState state = WatchState::held(plan.deletes());
    const Message said = messageOf(state, request_.pair);
    SyncJobResult result = end(End::held, said);
    result.state = state;
    return logged(std::move(result), Outcome::warning, {said});
}

SyncJobResult SyncRun::perform(SyncPlan plan) {
    const auto journal = dependencies_.runs.journals.open(
        dependencies_.runs.log.begin(toolID, request_.trigger, details_), printable(request_.pair.title()));
    journal->expect(plan.actions.size());
    Tracking tracking(plan, request_, control_, *journal);
    SyncJobResult result;
    result.end = End::done;
    try {
        result.result = SyncEngine::apply(plan, request_.pair, tracking.steering());
    } catch (const std::exception& error) {
        result.result.faults.push_back(vh::messageOf(error));
    }
    tracking.flush();
    plan = {}; // before the list is saved, which takes its room too
    result.result.errors = linesOf(result.result.faults, texts_);
    if (result.result.faults.empty() && !result.result.stopped)
        noteDone();
    result.record = journal->finish(
        outcomeOf(result.result),
        RunWords(summaryOf(result.result), texts_, firstProblems(result.result.faults)),
        metricsOf(result.result, tracking.bytesCopied()), detailsOf(result.result, tracking.bytesCopied()));
    result.message = result.record->summary;
    result.trackingFailure = journal->failure();
    if (request_.isAttended && !result.result.stopped)
        SyncWatchFile(dependencies_.folders).approve(request_.pair.id);
    return result;
}

/// A date that cannot be kept does not make a sync fail that was done.
void SyncRun::noteDone() {
    const auto isThis = [&](const SyncPair& each) {
        return each.id == request_.pair.id;
    };
    try {
        if (std::ranges::any_of(store_.load(), isThis))
            store_.change([&](std::vector<SyncPair>& pairs) {
                for (SyncPair& each : pairs)
                    if (isThis(each))
                        each.lastSync = dependencies_.clock();
            });
    } catch (const SystemError&) {
    }
}

SyncJobResult SyncRun::stopBefore() {
    SyncResult none;
    none.stopped = true;
    const Messages said = summaryOf(none);
    SyncJobResult result;
    result.end = End::done;
    result.message = worded(said, texts_);
    result.result = none;
    return request_.logsNothingToDo ? logged(std::move(result), Outcome::cancelled, said) : result;
}

SyncJobResult SyncRun::fail(const Message& why) {
    SyncJobResult result = end(End::failed, why);
    result.state = WatchState::failed(result.message);
    if (request_.isAttended)
        return result;
    return logged(std::move(result), Outcome::failed,
                  {{"run.named", {{"name", toolName(texts_, toolID)}, {"text", why}}}},
                  {{RunMetric::errors, 1}});
}

} // namespace

double SyncJobProgress::fraction() const {
    constexpr double bytesOfAnAction = 64 << 10; // what one costs beside its bytes
    const auto cost = [](int64_t actions, int64_t copied) {
        return static_cast<double>(actions) * bytesOfAnAction + static_cast<double>(copied);
    };
    return total == 0 ? 1 : std::min(1.0, cost(done, bytes) / cost(total, bytesTotal));
}

SyncJobResult runSync(SyncJobRequest request, const AutomationDependencies& dependencies,
                      const JobControl& control) {
    return SyncRun(std::move(request), dependencies, control).run();
}

std::optional<SyncPair> pairOfPayload(const std::map<std::string, std::string>& payload,
                                      const std::vector<SyncPair>& stored) {
    const auto valueOf = [&](const char* key) {
        const auto found = payload.find(key);
        return found == payload.end() ? std::string() : found->second;
    };
    if (const auto id = Uuid::parse(valueOf("pair")))
        if (const auto found = std::ranges::find(stored, *id, &SyncPair::id); found != stored.end())
            return *found;
    SyncPair pair;
    pair.source = valueOf("source");
    pair.destination = valueOf("destination");
    pair.deleteExtraneous = valueOf("delete") == "true";
    if (pair.source.empty() || pair.destination.empty())
        return std::nullopt;
    return pair;
}

} // namespace vh::automation
