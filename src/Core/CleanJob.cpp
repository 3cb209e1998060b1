#include "Core/CleanJob.h"

#include "Core/CleanReason.h"
#include "Core/ErrorMessage.h"
#include "Core/PathAllowlist.h"
#include "Core/Printable.h"
#include "Core/RunJournal.h"
#include "Core/RunLog.h"
#include "Core/SuiteModule.h"
#include "Core/Throttle.h"
#include "Core/ToolTexts.h"

#include <chrono>

namespace vh {

namespace {

/// The job between opening its journal and finishing it.
class CleanJob {
public:
    /// `part` is its own run when the journal is that of a whole one.
    CleanJob(SuiteModule& module, RemovalMethod method, bool isUnattended, const Texts& texts,
             const JobControl& control, RunJournal& journal, RunHandle* part)
        : module_(module), method_(method), isUnattended_(isUnattended), texts_(texts), control_(control),
          journal_(journal), part_(part) {}

    CleanJobResult run(const ScanReport& report, const CleanSelection& selection) {
        bool stopped = false;
        try {
            removeAll(report, selection);
        } catch (const Cancelled&) {
            stopped = true;
        } catch (const std::exception& error) {
            error_ = messageOf(error);
            done_.error = worded(*error_, texts_);
        }
        finish(stopped);
        return std::move(done_);
    }

private:
    void removeAll(const ScanReport& report, const CleanSelection& selection);
    void removeItem(const ScanItem& item);
    const char* removedState() const {
        return method_ == RemovalMethod::trash ? cleanState::trashed : cleanState::deleted;
    }
    void take(const ScanItem& item, CleanResult result);
    void skip(const ScanItem& item, const std::string& line);
    void reportProgress(size_t index, size_t count, const std::string& path);
    Outcome outcome(bool stopped) const;
    Messages message(bool stopped) const;
    void finish(bool stopped);

    SuiteModule& module_;
    const RemovalMethod method_;
    const bool isUnattended_;
    const Texts& texts_;
    const JobControl& control_;
    RunJournal& journal_;
    RunHandle* const part_;
    CleanJobResult done_;
    std::optional<Message> error_;
    Messages skipped_; ///< those of done_.skippedDetails
    Throttle reports_;
};

void CleanJob::removeAll(const ScanReport& report, const CleanSelection& selection) {
    std::vector<const ScanItem*> items;
    for (const ScanItem& item : report.items)
        if (selection.itemIDs.contains(item.id))
            items.push_back(&item);
    if (items.empty()) // what that means is the module's to say
        done_.result = module_.clean(selection, control_);
    for (size_t i = 0; i < items.size(); ++i) {
        control_.throwIfCancelled();
        reportProgress(i, items.size(), items[i]->path);
        removeItem(*items[i]);
    }
}

void CleanJob::removeItem(const ScanItem& item) {
    journal_.doing({.path = item.path, .bytes = item.byteSize, .state = removedState()});
    try {
        take(item, module_.clean({{item.id}, method_}, {control_.cancel, {}}));
    } catch (...) {
        journal_.done({item.path, std::nullopt, item.byteSize, cleanState::failed});
        throw;
    }
}

void CleanJob::take(const ScanItem& item, CleanResult result) {
    const bool isGoneInPart = !result.items.empty() && result.items.front().isGoneInPart;
    const char* const leftState = isGoneInPart ? cleanState::deletedInPart : cleanState::failed;
    const bool isRemoved = result.removedCount > 0;
    journal_.done({item.path, result.items.empty() ? std::nullopt : result.items.front().landed,
                   item.byteSize, isRemoved ? removedState() : leftState});
    CleanResult& all = done_.result;
    all.removedCount += result.removedCount;
    all.freedBytes += result.freedBytes;
    for (const std::string& line : result.errors)
        skip(item, line);
    std::ranges::move(result.errors, std::back_inserter(all.errors));
    std::ranges::move(result.items, std::back_inserter(all.items));
}

void CleanJob::skip(const ScanItem& item, const std::string& line) {
    const std::string start = item.path + ": ";
    // The path is known, so that one with ": " in its name is not cut there.
    const std::string reason =
        line.starts_with(start) ? plainReasonOfText(line.substr(start.size())) : plainReason(line);
    const size_t library = item.path.find("/Library/");
    skipped_.push_back({"run.item-problem",
                        {{"path", printable(item.path.substr(library == std::string::npos ? 0 : library))},
                         {"reason", reasonMessage(reason)}}});
    done_.skippedDetails.push_back(worded(skipped_.back(), texts_));
    if (reason == plain::protectedBySystem || reason == plain::inUse)
        done_.protectedPaths.insert(PathAllowlist::normalize(item.path));
    done_.skipped.push_back({item.path, reason});
}

void CleanJob::reportProgress(size_t index, size_t count, const std::string& path) {
    if (reports_.isDue())
        control_.report(static_cast<double>(index) / static_cast<double>(count), path);
}

Outcome CleanJob::outcome(bool stopped) const {
    if (stopped)
        return Outcome::cancelled;
    const bool removedNone = done_.result.removedCount == 0 && !done_.result.errors.empty();
    if (done_.error || (removedNone && !isUnattended_))
        return Outcome::failed;
    return done_.result.errors.empty() ? Outcome::success : Outcome::warning;
}

Messages CleanJob::message(bool stopped) const {
    if (done_.error && done_.result.items.empty())
        return {*error_};
    const char* const key = isUnattended_                     ? "scheduled-action.moved-to-trash"
                            : method_ == RemovalMethod::trash ? "clean.result-trashed"
                                                              : "clean.result-deleted";
    Messages message{
        {key, {{"count", done_.result.removedCount}, {"bytes", ByteCount{done_.result.freedBytes}}}}};
    if (!done_.result.errors.empty())
        message.push_back({"scan-clean-workspace.log-skipped", {{"count", done_.result.errors.size()}}});
    if (stopped)
        message.push_back({"clean.stopped", {}});
    if (done_.error)
        message.push_back(*error_);
    return message;
}

void CleanJob::finish(bool stopped) {
    const CleanResult& result = done_.result;
    const RunMetrics metrics{{RunMetric::filesRemoved, static_cast<double>(result.removedCount)},
                             {RunMetric::freedBytes, static_cast<double>(result.freedBytes)},
                             {RunMetric::errors, static_cast<double>(result.errors.size())}};
    const RunDetails details{{RunDetail::files, std::to_string(result.removedCount)},
                             {RunDetail::bytes, std::to_string(result.freedBytes)},
                             {RunDetail::failed, std::to_string(result.errors.size())}};
    const RunWords words(message(stopped), texts_, isUnattended_ ? firstProblems(skipped_) : Messages());
    done_.record = part_ ? part_->finish(outcome(stopped), words, metrics, details)
                         : journal_.finish(outcome(stopped), words, metrics, details);
    done_.trackingFailure = journal_.failure();
}

} // namespace

CleanJobResult runClean(SuiteModule& module, const ScanReport& report, const CleanSelection& selection,
                        const CleanStart& start, const RunStores& stores, const Texts& texts,
                        const JobControl& control) {
    const auto work = [&](RunJournal& journal, RunHandle* part) {
        return CleanJob(module, selection.method, start.isUnattended, texts, control, journal, part)
            .run(report, selection);
    };
    const std::string tool(module.id());
    if (start.within)
        return work(*start.within, stores.log.beginPart(tool, start.trigger, start.details).get());
    const auto run = stores.log.begin(tool, start.trigger, start.details);
    return work(*stores.journals.open(run, toolName(texts, tool)), nullptr);
}

} // namespace vh
