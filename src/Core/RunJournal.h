#pragma once

#include "Core/JournalLines.h"
#include "Core/RunFiles.h"
#include "Core/RunHandle.h"
#include "Core/RunLog.h"
#include "Platform/FileLock.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace vh {

/// The track of a run that changes things, so that a killed run still shows what it did. Lives as long as the run; a
/// full disk does not stop the run, only the tracking. Any thread may call.
class RunJournal {
public:
    ~RunJournal();

    /// Before a step, with the row that it leaves when it succeeds. Throws Cancelled once the run is finished.
    void doing(RunFileRow goal);
    /// After it, with what became of that path.
    void done(RunFileRow row);
    /// How many rows are to come at most.
    void expect(size_t rows);
    /// Rows of steps that were not announced, in one write.
    void add(std::vector<RunFileRow> rows);
    /// Writes the record and then the list of all rows; then the track goes. The list waits for the end of a step that
    /// is still under way. Does not throw.
    RunRecord finish(Outcome outcome, RunWords words, const RunMetrics& metrics = {},
                     const RunDetails& details = {});

    /// All that was done so far.
    std::vector<RunFileRow> rows() const;
    /// Why tracking or saving failed; empty while all is well.
    std::string failure() const;

private:
    friend class RunJournals;
    RunJournal(RunLog& log, RunFiles& files, std::shared_ptr<RunHandle> run);
    void open(const std::string& folder, const std::string& title);
    void write(const JournalLine& line);
    template <class Work>
    void attempt(Work work);
    void settle();

    RunLog& log_;
    RunFiles& files_;
    std::shared_ptr<RunHandle> run_;
    std::string path_; // empty when it could not be opened
    std::unique_ptr<FileLock> lock_;
    mutable std::mutex mutex_; // of what follows, and of the track
    std::vector<RunFileRow> rows_;
    std::string failure_;
    size_t open_ = 0; // steps under way
    bool isFinished_ = false;
    std::optional<RunLog::Stored> stored_; // of the record
};

/// The folder of the open runs' tracks. It stays where it is when the database moves.
class RunJournals {
public:
    /// What is said of it, made from the run's title.
    using SummaryOfInterrupted = std::function<RunWords(const std::string& title)>;

    RunJournals(std::string folder, RunLog& log, RunFiles& files);
    /// "<default database folder>/open-runs".
    static std::string folderOfUser();

    /// Never fails: a run whose track cannot be opened runs untracked (RunJournal::failure).
    std::unique_ptr<RunJournal> open(std::shared_ptr<RunHandle> run, const std::string& title);

    /// Whether the run's list is still to be saved.
    bool isOpen(const Uuid& run) const;

    /// Gives every run that was killed its record (failed, unless it had already finished) and its file list. Returns
    /// the records written by this call; what cannot be stored is left for the next.
    std::vector<RunRecord> recoverInterrupted(const SummaryOfInterrupted& summary);

private:
    std::optional<RunRecord> recover(const std::string& track, const SummaryOfInterrupted& summary);

    std::string folder_;
    RunLog& log_;
    RunFiles& files_;
};

} // namespace vh
