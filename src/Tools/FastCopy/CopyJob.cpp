#include "Tools/FastCopy/CopyJob.h"

#include <algorithm>
#include <numeric>

namespace vh::copy {

const RescueDisk* CopyJob::disk() const {
    for (const CopySource& each : sources)
        if (const auto* found = std::get_if<RescueDisk>(&each))
            return found;
    return nullptr;
}

std::vector<size_t> CopyJob::visibleIndices() const {
    std::vector<size_t> visible;
    for (size_t each = 0; each < destinations.size(); ++each)
        if (!removed.contains(each))
            visible.push_back(each);
    return visible;
}

bool CopyJob::holdsTheLine() const {
    if (state != State::running)
        return state == State::verifying;
    return std::ranges::any_of(visibleIndices(), [&](size_t each) {
        const bool isFilled = bytes && each < done.size() && done[each] >= *bytes;
        return !paused.contains(each) && !isFilled;
    });
}

double CopyJob::fraction() const {
    if (state == State::verifying)
        return verified;
    const auto visible = visibleIndices();
    if (!bytes || visible.empty())
        return -1;
    if (*bytes == 0)
        return 0;
    const auto all = std::accumulate(visible.begin(), visible.end(), 0.0, [&](double sum, size_t each) {
        return sum + (each < done.size() ? double(done[each]) : 0);
    });
    return std::clamp(all / double(*bytes) / double(visible.size()), 0.0, 1.0);
}

void CopyJob::follow(const CopyProgress& progress) {
    rate = progress.bytesPerSecond;
    secondsRemaining = progress.secondsRemaining;
    currentFile = progress.currentFile;
    if (progress.phase == CopyPhase::verifying) {
        state = State::verifying;
        verified = progress.bytesTotal > 0 ? double(progress.bytesDone) / double(progress.bytesTotal) : 0;
        return;
    }
    state = State::running;
    bytes = progress.bytesPerDestination;
    fileCount = progress.filesTotal;
    done = progress.destinationBytes;
}

void CopyJob::end(CopyReport finished) {
    endedWell = finished.outcome == CopyOutcome::completed;
    state = finished.outcome == CopyOutcome::stopped  ? State::stopped
            : finished.outcome == CopyOutcome::failed ? State::failed
                                                      : State::finished;
    bytes = finished.bytesPerDestination;
    fileCount = finished.filesPlanned;
    report = std::make_shared<const CopyReport>(std::move(finished));
}

std::optional<size_t> nextToStart(const std::vector<CopyJob>& jobs, bool runTogether) {
    if (!runTogether && std::ranges::any_of(jobs, &CopyJob::holdsTheLine))
        return std::nullopt;
    const auto next = std::ranges::find(jobs, CopyJob::State::queued, &CopyJob::state);
    if (next == jobs.end())
        return std::nullopt;
    return static_cast<size_t>(next - jobs.begin());
}

PlaceFault faultOf(const std::string& destination, const std::vector<std::string>& sources) {
    const std::string inside = destination.ends_with('/') ? destination : destination + "/";
    const auto below = [](const std::string& folder) {
        return folder.ends_with('/') ? folder : folder + "/";
    };
    if (std::ranges::any_of(sources, [&](const auto& source) { return inside.starts_with(below(source)); }))
        return PlaceFault::insideSource;
    const auto isRightThere = [&](const std::string& source) {
        return source.starts_with(inside) && source.find('/', inside.size()) == std::string::npos;
    };
    return std::ranges::any_of(sources, isRightThere) ? PlaceFault::holdsSource : PlaceFault::none;
}

} // namespace vh::copy
