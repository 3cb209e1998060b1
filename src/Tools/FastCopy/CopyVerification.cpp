#include "Tools/FastCopy/CopyVerification.h"

#include "Core/ContentHash.h"
#include "Core/Printable.h"
#include "Platform/MediumRead.h"
#include "Platform/SystemError.h"
#include "Tools/FastCopy/CopyProofs.h"
#include "Tools/FastCopy/CopySources.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>
#include <span>

namespace vh::copy {

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

/// Small files are hashed many at a time, so that nobody waits for each of them.
constexpr size_t mostFiles = 256;
constexpr int64_t mostBytes = 32 << 20;
constexpr size_t mostOpen = 32; ///< of a lane: the medium is asked for all of them at once
constexpr int64_t largestBegun = 1 << 20;
constexpr Seconds beforeEstimates{3.0};

/// What was read of one file.
struct Digest {
    std::string hex;
    FileState state;
};
using Digests = std::vector<std::optional<Digest>>;

class Verification {
public:
    Verification(CopyRun& run, CopyLanes& lanes, CopyProofs* proofs)
        : run_(run), lanes_(lanes), proofs_(proofs), sources_(run.found(), SourceFile::Attributes::left),
          folders_(run.destinations().size()) {
        for (size_t item = 0; item < run.items().size(); ++item)
            bytesTotal_ += run.items()[item].size * static_cast<int64_t>(waitingFor(item));
    }

    void verifyAll() {
        emit(CopyRun::Emit::forced);
        for (const std::string& destination : run_.destinations())
            flushVolume(destination);
        std::vector<size_t> files;
        int64_t bytes = 0;
        for (size_t item = 0; item < run_.items().size() && !run_.isStopped(); ++item) {
            if (waitingFor(item) == 0)
                continue;
            files.push_back(item);
            bytes += run_.items()[item].size;
            if (files.size() >= mostFiles || bytes >= mostBytes) {
                verifySome(files);
                files.clear();
                bytes = 0;
            }
        }
        if (!files.empty() && !run_.isStopped())
            verifySome(files);
    }

private:
    using Files = std::span<const size_t>;

    size_t laneOfSources() const { return run_.destinations().size(); }
    bool isDue(size_t item, size_t destination) const {
        return run_.awaitsProof(item, destination) && !run_.control().isRemoved(destination);
    }
    size_t waitingFor(size_t item) const {
        size_t count = 0;
        for (size_t each = 0; each < laneOfSources(); ++each)
            count += isDue(item, each) ? 1 : 0;
        return count;
    }

    std::optional<SourceFile> open(size_t item, size_t lane) {
        try {
            if (lane == laneOfSources())
                return sources_.open(item);
            if (!folders_[lane])
                folders_[lane].emplace(run_.destinations()[lane]);
            return folders_[lane]->source(run_.placeOf(item, lane), SourceFile::Attributes::left);
        } catch (const SystemError&) {
            return std::nullopt;
        }
    }

    std::optional<Digest> digestOf(const SourceFile& file, size_t lane) {
        const ReadFrom where = isBegun(file) ? ReadFrom::anywhere : fromWhere(lane);
        ContentHash hash(run_.options().algorithm);
        try {
            readBlocks(file.descriptor(), file.path(), where, [&](std::string_view block) {
                hash.update(block);
                if (lane != laneOfSources())
                    bytesRead_ += static_cast<int64_t>(block.size());
                return !run_.isStopped();
            });
        } catch (const SystemError&) {
            return std::nullopt;
        }
        return Digest{hash.hex(), file.state()};
    }
    ReadFrom fromWhere(size_t lane) const {
        return lane == laneOfSources() ? ReadFrom::anywhere : ReadFrom::medium;
    }
    static bool isBegun(const SourceFile& file) { return file.size() <= largestBegun; }

    void hash(Files files, size_t lane, Digests& digests) {
        for (size_t begin = 0; begin < files.size(); begin += mostOpen) {
            const size_t end = std::min(files.size(), begin + mostOpen);
            std::vector<std::optional<SourceFile>> some(end - begin);
            for (size_t each = begin; each < end; ++each)
                if (lane == laneOfSources() || isDue(files[each], lane))
                    if (auto& file = some[each - begin] = open(files[each], lane); file && isBegun(*file))
                        beginReading(file->descriptor(), fromWhere(lane));
            for (size_t each = begin; each < end && !run_.isStopped(); ++each)
                if (auto& file = some[each - begin]) {
                    digests[each] = digestOf(*file, lane);
                    file.reset();
                }
        }
    }

    void verifySome(Files files) {
        std::vector<Digests> digests(laneOfSources() + 1, Digests(files.size()));
        std::vector<size_t> lanes;
        for (size_t lane = 0; lane <= laneOfSources(); ++lane)
            lanes.push_back(lane);
        currentFile_ = run_.relativeOf(files.front());
        lanes_.start(lanes, [&](size_t lane) { hash(files, lane, digests[lane]); });
        while (!lanes_.waitFor(CopyRun::emitInterval))
            emit(CopyRun::Emit::throttled);
        if (run_.isStopped())
            return; // what was half read proves nothing
        for (size_t each = 0; each < files.size(); ++each)
            book(files[each], digests, each);
        emit(CopyRun::Emit::throttled);
    }

    void book(size_t item, const std::vector<Digests>& digests, size_t each) {
        const auto& source = digests[laneOfSources()][each];
        std::vector<std::pair<size_t, FileState>> proven;
        for (size_t destination = 0; destination < laneOfSources(); ++destination) {
            if (!isDue(item, destination))
                continue;
            const auto& copy = digests[destination][each];
            if (!source) {
                run_.bookMismatch(item, destination, CopyRun::BadCopy::unknown,
                                  {"fast-copy.problem.source-not-read-back", {}});
            } else if (copy && copy->hex == source->hex) {
                run_.bookVerified(item, destination, source->hex);
                proven.emplace_back(destination, copy->state);
            } else {
                const std::string place =
                    run_.destinations()[destination] + '/' + run_.placeOf(item, destination);
                run_.bookMismatch(item, destination, CopyRun::BadCopy::yes,
                                  {"fast-copy.problem.differs", {{"place", printable(place)}}});
            }
        }
        if (proofs_ && !proven.empty())
            proofs_->noteProven(run_.relativeOf(item), source->hex, proven);
    }

    void emit(CopyRun::Emit how) {
        if (!run_.progress() || !emits_.isDue(how == CopyRun::Emit::forced))
            return;
        const double elapsed = Seconds(Clock::now() - start_).count();
        CopyProgress progress;
        progress.phase = CopyPhase::verifying;
        progress.bytesDone = std::min(bytesRead_.load(), bytesTotal_);
        progress.bytesTotal = bytesTotal_;
        progress.currentFile = currentFile_;
        progress.bytesPerSecond = static_cast<double>(progress.bytesDone) / std::max(elapsed, 0.001);
        if (elapsed > beforeEstimates.count() && progress.bytesDone > bytesTotal_ / 20 &&
            progress.bytesDone < bytesTotal_)
            progress.secondsRemaining =
                static_cast<double>(bytesTotal_ - progress.bytesDone) / progress.bytesPerSecond;
        run_.progress()(progress);
    }

    CopyRun& run_;
    CopyLanes& lanes_;
    CopyProofs* const proofs_;
    CopySources sources_;
    std::vector<std::optional<CopyFolder>> folders_; ///< each for its own lane
    const Clock::time_point start_ = Clock::now();
    Throttle emits_{CopyRun::emitInterval};
    std::string currentFile_;
    std::atomic<int64_t> bytesRead_ = 0; ///< of copies
    int64_t bytesTotal_ = 0;
};

} // namespace

void verify(CopyRun& run, CopyLanes& lanes, CopyProofs* proofs) {
    Verification(run, lanes, proofs).verifyAll();
}

} // namespace vh::copy
