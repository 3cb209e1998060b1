#include "Core/RunJournal.h"

#include "Core/DatabaseLocation.h"
#include "Core/JournalLines.h"
#include "Core/RunLog.h"
#include "Platform/CancelToken.h"
#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/GrowingFile.h"
#include "Platform/Removal.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <fmt/format.h>

namespace vh {

namespace {

constexpr std::string_view ending = ".jsonl";

/// Held while a track is made or claimed, so that nobody takes one for abandoned before its run has locked it.
FileLock lockFolder(const std::string& folder) {
    makeFolders(folder);
    return FileLock(folder + ".lock");
}

std::string trackIn(const std::string& folder, const Uuid& run) {
    return fmt::format("{}/{}{}", folder, run.text(), ending);
}

std::vector<std::string> tracksIn(const std::string& folder) {
    std::vector<std::string> tracks;
    if (statusOf(folder))
        for (const auto& name : childNames(folder))
            if (name.ends_with(ending))
                tracks.push_back(fmt::format("{}/{}", folder, name));
    return tracks;
}

/// The lock of a track whose run is gone; false while the run lives.
FileLock claim(const std::string& folder, const std::string& track) {
    const FileLock guard = lockFolder(folder);
    return FileLock::tryLock(track);
}

} // namespace

// ---- a run that is under way

RunJournal::RunJournal(RunLog& log, RunFiles& files, std::shared_ptr<RunHandle> run)
    : log_(log), files_(files), run_(std::move(run)) {}

RunJournal::~RunJournal() = default;

void RunJournal::open(const std::string& folder, const std::string& title) {
    try {
        const FileLock guard = lockFolder(folder);
        path_ = trackIn(folder, run_->id());
        lock_ = std::make_unique<FileLock>(path_);
        write(JournalHeader{run_->id(), run_->toolID(), run_->trigger(), run_->startedAt(), title,
                            rawDetails(run_->details())});
    } catch (const SystemError& error) {
        path_.clear();
        failure_ = error.what();
    }
}

template <class Work>
void RunJournal::attempt(Work work) {
    try {
        work();
    } catch (const std::runtime_error& error) {
        failure_ = error.what();
    }
}

void RunJournal::write(const JournalLine& line) {
    if (!path_.empty())
        attempt([&] { appendToFile(path_, encodeJson(line) + "\n"); });
}

void RunJournal::doing(RunFileRow goal) {
    const std::lock_guard hold(mutex_);
    if (isFinished_) // nothing may be touched that no list will name
        throw Cancelled();
    write(JournalIntent{std::move(goal)});
    ++open_;
}

void RunJournal::done(RunFileRow row) {
    const std::lock_guard hold(mutex_);
    write(row);
    rows_.push_back(std::move(row));
    if (open_ > 0)
        --open_;
    settle();
}

void RunJournal::expect(size_t rows) {
    const std::lock_guard hold(mutex_);
    rows_.reserve(rows);
}

void RunJournal::add(std::vector<RunFileRow> rows) {
    const std::lock_guard hold(mutex_);
    std::string lines;
    for (const RunFileRow& row : rows)
        lines += encodeJson(JournalLine(row)) + "\n";
    if (!path_.empty())
        attempt([&] { appendToFile(path_, lines); });
    std::ranges::move(rows, std::back_inserter(rows_));
}

std::vector<RunFileRow> RunJournal::rows() const {
    const std::lock_guard hold(mutex_);
    return rows_;
}

std::string RunJournal::failure() const {
    const std::lock_guard hold(mutex_);
    return failure_;
}

RunRecord RunJournal::finish(Outcome outcome, RunWords words, const RunMetrics& metrics,
                             const RunDetails& details) {
    const auto record = run_->close(outcome, std::move(words), metrics, details);
    if (!record)
        return run_->closedRecord();
    {
        const std::lock_guard hold(mutex_);
        isFinished_ = true;
        write(*record);
        if (!path_.empty())
            attempt([&] { flushFile(path_); });
    }
    const auto stored = log_.record(*record); // tells others, who may ask for the rows
    const std::lock_guard hold(mutex_);
    stored_ = stored;
    settle();
    return *record;
}

/// What fails here is done from the track at the next start.
void RunJournal::settle() {
    if (!stored_ || open_ > 0)
        return;
    attempt([&] {
        if (!rows_.empty())
            files_.save(run_->id(), rows_);
        if (stored_ == RunLog::Stored::inFile && !path_.empty())
            removePermanently(path_);
    });
}

// ---- runs that were killed

RunJournals::RunJournals(std::string folder, RunLog& log, RunFiles& files)
    : folder_(std::move(folder)), log_(log), files_(files) {}

std::string RunJournals::folderOfUser() {
    return DatabaseLocation::defaultFolder() + "/open-runs";
}

std::unique_ptr<RunJournal> RunJournals::open(std::shared_ptr<RunHandle> run, const std::string& title) {
    std::unique_ptr<RunJournal> journal(new RunJournal(log_, files_, std::move(run)));
    journal->open(folder_, title);
    return journal;
}

bool RunJournals::isOpen(const Uuid& run) const {
    return statusOf(trackIn(folder_, run)).has_value();
}

std::vector<RunRecord> RunJournals::recoverInterrupted(const SummaryOfInterrupted& summary) {
    std::vector<RunRecord> written;
    for (const auto& track : tracksIn(folder_)) {
        try {
            if (const FileLock lock = claim(folder_, track))
                if (auto record = recover(track, summary))
                    written.push_back(std::move(*record));
        } catch (const SystemError&) {
            // It stays for the next call; one track's trouble is not the others'.
        }
    }
    return written;
}

/// The record first, then the list, then the track goes: stopped anywhere, the next call goes on.
std::optional<RunRecord> RunJournals::recover(const std::string& track, const SummaryOfInterrupted& summary) {
    const auto found = readJournal(readFileIfPresent(track).value_or(""));
    std::optional<RunRecord> written;
    if (found) {
        const Uuid id = found->header.id;
        auto stored = log_.find(id);
        if (!stored) {
            written =
                found->finished ? *found->finished : interruptedRecord(*found, summary(found->header.title));
            stored = log_.record(*written);
        }
        if (stored == RunLog::Stored::inMemory)
            return written;
        const auto rows = found->allRows();
        if (!rows.empty() && !files_.has(id))
            files_.save(id, rows);
    }
    if (statusOf(track))
        removePermanently(track);
    return written;
}

} // namespace vh
