#pragma once

#include "Core/Throttle.h"
#include "Tools/FastCopy/CopyControl.h"
#include "Tools/FastCopy/CopyItems.h"
#include "Tools/FastCopy/CopyOptions.h"
#include "Tools/FastCopy/CopyProgress.h"
#include "Tools/FastCopy/CopyReport.h"

#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vh::copy {

/// What became of one file on one destination, before it is booked.
struct Landing {
    CopiedFileState state = CopiedFileState::failed;
    bool isReplaced = false;
    std::string place;              ///< where it landed below the destination
    std::optional<Message> problem; ///< of the file
    enum class Refused { no, beginning, writing };
    Refused refused = Refused::no; ///< by the destination, on which step
};

/// Of a file that is not the same any more.
Message sourceChanged();
/// One that did not come to its name.
Landing failedLanding(Message problem, Landing::Refused refused = Landing::Refused::no);

/// A file that was offered to several destinations and accepted by none of them gets the one problem that it is.
void tellWhenNobodyTookIt(const std::vector<Landing*>& landings);

/// The bookkeeping of one copy: a byte or two for each file and destination, so that millions find room. Engine's
/// thread; items and places may be read by all while nothing is booked.
class CopyRun {
public:
    using Progress = std::function<void(const CopyProgress&)>;

    CopyRun(CopyItems found, std::vector<std::string> destinations, const CopyOptions& options,
            const CopyControl& control, Progress progress);

    const CopyItems& found() const { return found_; }
    const std::vector<CopyItem>& items() const { return found_.items; }
    std::string relativeOf(size_t item) const { return found_.relativeOf(item); }
    const std::vector<std::string>& destinations() const { return destinations_; }
    const CopyOptions& options() const { return options_; }
    const CopyControl& control() const { return control_; }

    /// Those that are neither paused nor removed; a paused one takes the item later.
    std::vector<size_t> takersOf(size_t item);
    void defer(size_t item, size_t destination) {
        deferred_[destination].push_back(static_cast<uint32_t>(item));
    }
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
    void addProblem(size_t destination, Message problem);

    /// Tells how far it is, throttled unless forced.
    static constexpr std::chrono::milliseconds emitInterval{150};
    enum class Emit { throttled, forced };
    void emit(Emit how, const std::string& currentFile);

    /// Whether it stands there and was not read back yet.
    bool awaitsProof(size_t item, size_t destination) const;
    /// Where it landed, below the destination.
    std::string placeOf(size_t item, size_t destination) const;
    void bookVerified(size_t item, size_t destination, const std::string& checksum);
    enum class BadCopy { yes, unknown };
    void bookMismatch(size_t item, size_t destination, BadCopy bad, Message problem);

    void stop() { isStopped_ = true; }
    bool isStopped() const { return isStopped_ || control_.isCancelled(); }
    CopyReport finish();

    const Progress& progress() const { return progress_; }

private:
    using Clock = std::chrono::steady_clock;
    using Fate = uint8_t; ///< 0 until something became of it, then the state and 1
    static Fate fateOf(CopiedFileState state) { return static_cast<Fate>(static_cast<int>(state) + 1); }
    static bool hasLanded(Fate fate);
    bool hasLandedSomewhere(size_t item) const;
    void sampleRate(Clock::time_point now);
    std::vector<CopiedFile> files() const;

    const CopyItems found_;
    const std::vector<std::string> destinations_;
    const CopyOptions options_;
    const CopyControl& control_;
    const Progress progress_;
    const CopyPlan plan_;
    const Clock::time_point start_ = Clock::now();

    std::vector<DestinationReport> reports_;
    std::vector<int64_t> done_;
    std::vector<std::deque<uint32_t>> deferred_;
    std::vector<std::vector<Fate>> fates_;                             ///< per destination, of each item
    std::vector<std::unordered_map<size_t, std::string>> otherPlaces_; ///< of those that were renamed
    std::vector<std::string> checksums_; ///< of each item; empty when nothing is verified
    int64_t landedFiles_ = 0;
    bool isStopped_ = false;
    int64_t bytesRead_ = 0;
    int64_t sampledBytes_ = 0;
    double rate_ = 0;
    Clock::time_point sampledAt_ = start_;
    Throttle emits_{emitInterval};
};

} // namespace vh::copy
