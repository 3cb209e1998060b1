#include "Tools/FastCopy/CopyRun.h"

#include "Core/ErrorMessage.h"

#include <algorithm>
#include <numeric>

namespace vh::copy {

namespace {

using Seconds = std::chrono::duration<double>;
constexpr Seconds beforeEstimates{3.0};
constexpr double smoothing = 0.3;
constexpr double stillnessBelow = 1024; ///< bytes a second

} // namespace

void tellWhenNobodyTookIt(const std::vector<Landing*>& landings) {
    using Refused = Landing::Refused;
    const auto refusing = [](Refused step) {
        return [step](const Landing* each) {
            return each->refused == step;
        };
    };
    if (std::ranges::any_of(landings, refusing(Refused::no)))
        return;
    const bool begun = std::ranges::any_of(landings, refusing(Refused::writing));
    const char* const key = begun ? "fast-copy.problem.writing-stopped" : "fast-copy.problem.no-destination";
    for (Landing* each : landings) {
        const auto reason = each->problem->arguments.find("reason");
        each->problem = {
            key, {{"reason", reason == each->problem->arguments.end() ? *each->problem : reason->second}}};
    }
}

Message sourceChanged() {
    return {"fast-copy.problem.source-changed", {}};
}

Landing failedLanding(Message problem, Landing::Refused refused) {
    return {CopiedFileState::failed, false, {}, std::move(problem), refused};
}

CopyRun::CopyRun(CopyItems found, std::vector<std::string> destinations, const CopyOptions& options,
                 const CopyControl& control, Progress progress)
    : found_(std::move(found)), destinations_(std::move(destinations)), options_(options), control_(control),
      progress_(std::move(progress)), plan_(planOf(found_.items)), done_(destinations_.size()),
      deferred_(destinations_.size()), fates_(destinations_.size(), std::vector<Fate>(found_.items.size())),
      otherPlaces_(destinations_.size()), checksums_(options_.verifies() ? found_.items.size() : 0) {
    for (const std::string& path : destinations_) {
        DestinationReport report;
        report.path = path;
        report.faults = found_.unreadable;
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

bool CopyRun::hasLanded(Fate fate) {
    return fate != 0 && fate != fateOf(CopiedFileState::skipped) && fate != fateOf(CopiedFileState::failed);
}

bool CopyRun::hasLandedSomewhere(size_t item) const {
    return std::ranges::any_of(fates_, [item](const auto& fates) { return hasLanded(fates[item]); });
}

bool CopyRun::awaitsProof(size_t item, size_t destination) const {
    const Fate fate = fates_[destination][item];
    return !items()[item].isLink() && // read back when it was placed
           (fate == fateOf(CopiedFileState::copied) || fate == fateOf(CopiedFileState::cloned));
}

std::string CopyRun::placeOf(size_t item, size_t destination) const {
    const auto other = otherPlaces_[destination].find(item);
    return other == otherPlaces_[destination].end() ? relativeOf(item) : other->second;
}

void CopyRun::book(size_t item, size_t destination, const Landing& landing, int64_t counted) {
    DestinationReport& report = reports_[destination];
    const int64_t size = items()[item].size;
    count(destination, size - counted);
    if (landing.problem)
        addProblem(destination, atPath(relativeOf(item), *landing.problem));
    const bool isFirst = hasLanded(fateOf(landing.state)) && !hasLandedSomewhere(item);
    fates_[destination][item] = fateOf(landing.state);
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
    landedFiles_ += isFirst ? 1 : 0;
    if (landing.place != relativeOf(item))
        otherPlaces_[destination].emplace(item, landing.place);
}

void CopyRun::addProblem(size_t destination, Message problem) {
    reports_[destination].faults.push_back(std::move(problem));
}

void CopyRun::bookVerified(size_t item, size_t destination, const std::string& checksum) {
    ++reports_[destination].verified;
    fates_[destination][item] = fateOf(CopiedFileState::verified);
    checksums_[item] = checksum;
}

void CopyRun::bookMismatch(size_t item, size_t destination, BadCopy bad, Message problem) {
    DestinationReport& report = reports_[destination];
    ++report.mismatched;
    if (bad == BadCopy::yes) {
        ++report.badCopies;
        report.bytes = std::max<int64_t>(0, report.bytes - items()[item].size);
    }
    fates_[destination][item] = fateOf(CopiedFileState::mismatched);
    addProblem(destination, atPath(relativeOf(item), std::move(problem)));
}

void CopyRun::sampleRate(Clock::time_point now) {
    const double seconds = Seconds(now - sampledAt_).count();
    if (seconds < Seconds(emitInterval).count())
        return;
    const double current = static_cast<double>(bytesRead_ - sampledBytes_) / seconds;
    rate_ = rate_ == 0 ? current : smoothing * current + (1 - smoothing) * rate_;
    if (rate_ < stillnessBelow)
        rate_ = 0;
    sampledAt_ = now;
    sampledBytes_ = bytesRead_;
}

void CopyRun::emit(Emit how, const std::string& currentFile) {
    if (!progress_ || !emits_.isDue(how == Emit::forced))
        return;
    const auto now = Clock::now();
    sampleRate(now);
    CopyProgress progress;
    int64_t active = 0;
    int64_t toWrite = 0; // to whoever lacks most of those that are not paused
    for (size_t each = 0; each < done_.size(); ++each) {
        if (control_.isRemoved(each))
            continue;
        ++active;
        progress.bytesDone += done_[each];
        if (!control_.isPaused(each))
            toWrite = std::max(toWrite, plan_.bytes - done_[each]);
    }
    progress.bytesTotal = plan_.bytes * active;
    progress.filesDone = landedFiles_;
    progress.filesTotal = plan_.fileCount;
    progress.currentFile = currentFile;
    progress.bytesPerSecond = rate_;
    progress.destinationBytes = done_;
    progress.bytesPerDestination = plan_.bytes;
    if (now - start_ > beforeEstimates && progress.bytesDone > progress.bytesTotal / 20 && rate_ > 0 &&
        toWrite > 0)
        progress.secondsRemaining = static_cast<double>(toWrite) / rate_;
    progress_(progress);
}

std::vector<CopiedFile> CopyRun::files() const {
    std::vector<CopiedFile> files;
    size_t count = 0;
    for (const auto& fates : fates_)
        count += fates.size() - static_cast<size_t>(std::ranges::count(fates, Fate{0}));
    files.reserve(count);
    for (size_t item = 0; item < items().size(); ++item)
        for (size_t each = 0; each < destinations_.size(); ++each) {
            const Fate fate = fates_[each][item];
            if (fate == 0 || control_.isRemoved(each))
                continue;
            CopiedFile& file = files.emplace_back();
            file.relative = relativeOf(item);
            file.destination = destinations_[each];
            file.bytes = items()[item].size;
            file.state = static_cast<CopiedFileState>(fate - 1);
            if (file.state == CopiedFileState::verified)
                file.checksum = checksums_[item];
            if (const auto other = otherPlaces_[each].find(item); other != otherPlaces_[each].end())
                file.landedAs = other->second;
        }
    return files;
}

CopyReport CopyRun::finish() {
    CopyReport report;
    for (size_t each = 0; each < reports_.size(); ++each)
        reports_[each].removed = control_.isRemoved(each);
    for (size_t item = 0; item < items().size(); ++item)
        report.filesFinished +=
            hasLandedSomewhere(item) && std::ranges::none_of(fates_, [item](const auto& fates) {
                return fates[item] == fateOf(CopiedFileState::mismatched);
            });
    report.files = files();
    report.destinations = std::move(reports_);
    report.filesPlanned = plan_.fileCount;
    report.verifyRequested = options_.verifies();
    report.algorithm = options_.algorithm;
    report.bytesPerDestination = plan_.bytes;
    report.leftOut = found_.leftOut;
    report.seconds = Seconds(Clock::now() - start_).count();
    report.outcome = outcomeOf(report, isStopped());
    return report;
}

} // namespace vh::copy
