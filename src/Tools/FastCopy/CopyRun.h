#pragma once

#include "Tools/FastCopy/CopyControl.h"
#include "Tools/FastCopy/CopyItems.h"
#include "Tools/FastCopy/CopyOptions.h"
#include "Tools/FastCopy/CopyProgress.h"
#include "Tools/FastCopy/CopyReport.h"

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vh::copy {

/// What became of one file on one destination, before it is booked.
struct Landing {
    CopiedFileState state = CopiedFileState::failed;
    bool isReplaced = false;
    std::string finalRelative; ///< where it landed below the destination
    std::string problem;       ///< after the file's name, for people; empty while all is well
};

/// The bookkeeping of one copy. Engine's thread.
class CopyRun {
public:
    using Progress = std::function<void(const CopyProgress&)>;

    CopyRun(CopyItems found, std::vector<std::string> destinations, const CopyOptions& options,
            const CopyControl& control, Progress progress);

    const std::vector<CopyItem>& items() const { return items_; }
    const std::vector<std::string>& destinations() const { return destinations_; }
    const CopyOptions& options() const { return options_; }
    const CopyControl& control() const { return control_; }

    /// Those that are neither paused nor removed; a paused one takes the item later.
    std::vector<size_t> takersOf(size_t item);
    void defer(size_t item, size_t destination) { deferred_[destination].push_back(item); }
    /// A deferred item and the destinations that wait for it and are ready; nobody when only paused ones wait.
    struct Turn {
        size_t item = 0;
        std::vector<size_t> takers;
    };
    Turn nextDeferred();
    bool hasDeferred() const;

    /// Bytes of a file on their way to a destination; `takeBack` when they were in vain.
    void count(size_t destination, int64_t bytes) { done_[destination] += bytes; }
    void takeBack(size_t destination, int64_t bytes) { done_[destination] -= bytes; }
    void countRead(int64_t bytes) { bytesRead_ += bytes; }
    /// Writes down what became of an item; the rest of its size counts as done.
    void book(size_t item, size_t destination, const Landing& landing, int64_t counted);
    void addProblem(size_t destination, const std::string& line);

    /// Tells how far it is, at most every 0.15 s unless forced.
    enum class Emit { throttled, forced };
    void emit(Emit how, const std::string& currentFile);

    /// A file and where it landed.
    struct Landed {
        size_t item = 0;
        std::vector<std::pair<size_t, std::string>> places; ///< destination and path below it
    };
    const std::vector<Landed>& landed() const { return landed_; }
    void bookVerified(const Landed& file, size_t destination, const std::string& checksum);
    enum class BadCopy { yes, unknown };
    void bookMismatch(const Landed& file, size_t destination, BadCopy bad, const std::string& problem);

    void stop() { isStopped_ = true; }
    bool isStopped() const { return isStopped_ || control_.isCancelled(); }
    CopyReport finish();

    const Progress& progress() const { return progress_; }

private:
    using Clock = std::chrono::steady_clock;
    CopiedFile& note(size_t item, size_t destination);
    void sampleRate(Clock::time_point now);

    const std::vector<CopyItem> items_;
    const std::vector<std::string> destinations_;
    const CopyOptions options_;
    const CopyControl& control_;
    const Progress progress_;
    const CopyPlan plan_;
    const Clock::time_point start_ = Clock::now();

    std::vector<DestinationReport> reports_;
    std::vector<int64_t> done_;
    std::vector<std::deque<size_t>> deferred_;
    std::vector<Landed> landed_;
    std::unordered_map<size_t, size_t> landedAt_; ///< item to its place in landed_
    std::vector<CopiedFile> files_;
    std::vector<size_t> fileDestination_;                   ///< of each of files_
    std::vector<std::unordered_map<size_t, size_t>> noted_; ///< per destination, item to its place in files_
    bool isStopped_ = false;
    int64_t bytesRead_ = 0;
    int64_t sampledBytes_ = 0;
    double rate_ = 0;
    Clock::time_point sampledAt_ = start_;
    Clock::time_point emittedAt_{};
};

} // namespace vh::copy
