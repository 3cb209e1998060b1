#include "Tools/FastCopy/CopyRun.h"

#include <algorithm>
#include <numeric>

namespace vh::copy {

namespace {

using Seconds = std::chrono::duration<double>;
constexpr Seconds emitInterval{0.15};
constexpr Seconds beforeEstimates{3.0};
constexpr double smoothing = 0.3;
constexpr double stillnessBelow = 1024; ///< bytes a second

} // namespace

CopyRun::CopyRun(CopyItems found, std::vector<std::string> destinations, const CopyOptions& options,
                 const CopyControl& control, Progress progress)
    : items_(std::move(found.items)), destinations_(std::move(destinations)), options_(options),
      control_(control), progress_(std::move(progress)), plan_(planOf(items_)), done_(destinations_.size()),
      deferred_(destinations_.size()), noted_(destinations_.size()) {
    for (const std::string& path : destinations_) {
        DestinationReport report;
        report.path = path;
        report.problems = found.unreadable;
        reports_.push_back(std::move(report));
    }
}

std::vector<size_t> CopyRun::takersOf(size_t item) {
    std::vector<size_t> takers;
    for (size_t each = 0; each < destinations_.size(); ++each)
        if (control_.takes(each))
            takers.push_back(each);
        else if (!control_.isRemoved(each))
            defer(item, each);
    return takers;
}

bool CopyRun::hasDeferred() const {
    return std::ranges::any_of(deferred_, [](const auto& items) { return !items.empty(); });
}

CopyRun::Turn CopyRun::nextDeferred() {
    Turn turn;
    for (size_t each = 0; each < deferred_.size(); ++each) {
        if (control_.isRemoved(each))
            deferred_[each].clear();
        if (deferred_[each].empty() || !control_.takes(each))
            continue;
        if (turn.takers.empty())
            turn.item = deferred_[each].front();
        if (deferred_[each].front() != turn.item)
            continue;
        turn.takers.push_back(each);
        deferred_[each].pop_front();
    }
    return turn;
}

CopiedFile& CopyRun::note(size_t item, size_t destination) {
    const auto [found, isNew] = noted_[destination].emplace(item, files_.size());
    if (isNew) {
        files_.push_back({items_[item].relative, destinations_[destination], items_[item].size});
        fileDestination_.push_back(destination);
    }
    return files_[found->second];
}

void CopyRun::book(size_t item, size_t destination, const Landing& landing, int64_t counted) {
    DestinationReport& report = reports_[destination];
    const int64_t size = items_[item].size;
    count(destination, size - counted);
    CopiedFile& noted = note(item, destination);
    noted.state = landing.state;
    noted.landedAs = landing.finalRelative == noted.relative ? "" : landing.finalRelative;
    if (!landing.problem.empty())
        addProblem(destination, items_[item].relative + ": " + landing.problem);
    if (landing.state == CopiedFileState::skipped) {
        ++report.skipped;
        return;
    }
    if (landing.state == CopiedFileState::failed) {
        ++report.failed;
        return;
    }
    ++(landing.state == CopiedFileState::cloned ? report.cloned : report.copied);
    report.replaced += landing.isReplaced ? 1 : 0;
    report.bytes += size;
    const auto [found, isNew] = landedAt_.emplace(item, landed_.size());
    if (isNew)
        landed_.push_back({item, {}});
    landed_[found->second].places.emplace_back(destination, landing.finalRelative);
}

void CopyRun::addProblem(size_t destination, const std::string& line) {
    reports_[destination].problems.push_back(line);
}

void CopyRun::bookVerified(const Landed& file, size_t destination, const std::string& checksum) {
    ++reports_[destination].verified;
    CopiedFile& noted = note(file.item, destination);
    noted.state = CopiedFileState::verified;
    noted.checksum = checksum;
}

void CopyRun::bookMismatch(const Landed& file, size_t destination, BadCopy bad, const std::string& problem) {
    DestinationReport& report = reports_[destination];
    ++report.mismatched;
    if (bad == BadCopy::yes) {
        ++report.badCopies;
        report.bytes = std::max<int64_t>(0, report.bytes - items_[file.item].size);
    }
    note(file.item, destination).state = CopiedFileState::mismatched;
    addProblem(destination, items_[file.item].relative + ": " + problem);
}

void CopyRun::sampleRate(Clock::time_point now) {
    const double seconds = Seconds(now - sampledAt_).count();
    if (seconds < emitInterval.count())
        return;
    const double current = static_cast<double>(bytesRead_ - sampledBytes_) / seconds;
    rate_ = rate_ == 0 ? current : smoothing * current + (1 - smoothing) * rate_;
    if (rate_ < stillnessBelow)
        rate_ = 0;
    sampledAt_ = now;
    sampledBytes_ = bytesRead_;
}

void CopyRun::emit(Emit how, const std::string& currentFile) {
    const auto now = Clock::now();
    if (!progress_ || (how == Emit::throttled && now - emittedAt_ < emitInterval))
        return;
    emittedAt_ = now;
    sampleRate(now);
    CopyProgress progress;
    int64_t active = 0;
    for (size_t each = 0; each < done_.size(); ++each)
        if (!control_.isRemoved(each)) {
            ++active;
            progress.bytesDone += done_[each];
        }
    progress.bytesTotal = plan_.bytes * active;
    progress.filesDone = static_cast<int64_t>(landed_.size());
    progress.filesTotal = plan_.fileCount;
    progress.currentFile = currentFile;
    progress.bytesPerSecond = rate_;
    progress.destinationBytes = done_;
    progress.bytesPerDestination = plan_.bytes;
    const double together = rate_ * static_cast<double>(active);
    if (now - start_ > beforeEstimates && progress.bytesDone > progress.bytesTotal / 20 && together > 0 &&
        progress.bytesDone < progress.bytesTotal)
        progress.secondsRemaining = static_cast<double>(progress.bytesTotal - progress.bytesDone) / together;
    progress_(progress);
}

CopyReport CopyRun::finish() {
    CopyReport report;
    for (size_t each = 0; each < reports_.size(); ++each)
        reports_[each].removed = control_.isRemoved(each);
    for (const Landed& file : landed_)
        report.filesFinished += std::ranges::none_of(file.places, [&](const auto& place) {
            return note(file.item, place.first).state == CopiedFileState::mismatched;
        });
    for (size_t each = 0; each < files_.size(); ++each)
        if (!control_.isRemoved(fileDestination_[each]))
            report.files.push_back(std::move(files_[each]));
    report.destinations = std::move(reports_);
    report.filesPlanned = plan_.fileCount;
    report.verifyRequested = options_.verifies();
    report.algorithm = options_.algorithm;
    report.bytesPerDestination = plan_.bytes;
    report.seconds = Seconds(Clock::now() - start_).count();
    report.outcome = outcomeOf(report, isStopped());
    return report;
}

} // namespace vh::copy
