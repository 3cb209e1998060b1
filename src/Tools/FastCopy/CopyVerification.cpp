#include "Tools/FastCopy/CopyVerification.h"

#include "Core/ContentHash.h"
#include "Platform/MediumRead.h"
#include "Platform/SystemError.h"

#include <algorithm>
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
constexpr Seconds emitInterval{0.15};
constexpr Seconds beforeEstimates{3.0};

class Verification {
public:
    Verification(CopyRun& run, CopyLanes& lanes) : run_(run), lanes_(lanes) {
        for (const CopyRun::Landed& file : run.landed())
            bytesTotal_ += sizeOf(file) * static_cast<int64_t>(file.places.size());
    }

    void verifyAll() {
        emit({});
        for (const std::string& destination : run_.destinations())
            flushVolume(destination);
        const std::vector<CopyRun::Landed>& all = run_.landed();
        for (size_t begin = 0; begin < all.size() && !run_.isStopped();) {
            size_t end = begin;
            for (int64_t bytes = 0; end < all.size() && end - begin < mostFiles && bytes < mostBytes; ++end)
                bytes += sizeOf(all[end]);
            verifySome({all.begin() + static_cast<ptrdiff_t>(begin), end - begin});
            begin = end;
        }
    }

private:
    using Files = std::span<const CopyRun::Landed>;
    using Digests = std::vector<std::optional<std::string>>;

    int64_t sizeOf(const CopyRun::Landed& file) const { return run_.items()[file.item].size; }
    size_t laneOfSources() const { return run_.destinations().size(); }

    static const std::string* placeOn(const CopyRun::Landed& file, size_t destination) {
        const auto found =
            std::ranges::find(file.places, destination, &std::pair<size_t, std::string>::first);
        return found == file.places.end() ? nullptr : &found->second;
    }

    std::optional<std::string> hashOf(const std::string& path, ReadFrom where) const {
        ContentHash hash(run_.options().algorithm);
        try {
            readBlocks(path, where, [&](std::string_view block) {
                hash.update(block);
                return !run_.isStopped();
            });
        } catch (const SystemError&) {
            return std::nullopt;
        }
        return hash.hex();
    }

    void verifySome(Files files) {
        std::vector<Digests> digests(laneOfSources() + 1, Digests(files.size()));
        std::vector<size_t> lanes;
        for (size_t lane = 0; lane <= laneOfSources(); ++lane)
            lanes.push_back(lane);
        lanes_.run(lanes, [&](size_t lane) {
            for (size_t each = 0; each < files.size() && !run_.isStopped(); ++each)
                if (lane == laneOfSources())
                    digests[lane][each] = hashOf(run_.items()[files[each].item].source, ReadFrom::anywhere);
                else if (const std::string* place = placeOn(files[each], lane))
                    digests[lane][each] = hashOf(run_.destinations()[lane] + '/' + *place, ReadFrom::medium);
        });
        if (run_.isStopped())
            return; // what was half read proves nothing
        for (size_t each = 0; each < files.size(); ++each)
            book(files[each], digests[laneOfSources()][each], digests, each);
        emit(run_.items()[files.back().item].relative);
    }

    void book(const CopyRun::Landed& file, const std::optional<std::string>& source,
              const std::vector<Digests>& digests, size_t each) {
        for (const auto& [destination, place] : file.places) {
            bytesDone_ += sizeOf(file);
            const auto& copy = digests[destination][each];
            if (!source)
                run_.bookMismatch(file, destination, CopyRun::BadCopy::unknown,
                                  "the source could not be read back for verification");
            else if (copy == source)
                run_.bookVerified(file, destination, *source);
            else
                run_.bookMismatch(file, destination, CopyRun::BadCopy::yes,
                                  "the copy does not match the source (left in place at " +
                                      run_.destinations()[destination] + '/' + place +
                                      " so it can be compared; copy it again)");
        }
    }

    void emit(const std::string& currentFile) {
        const auto now = Clock::now();
        if (!run_.progress() || (!currentFile.empty() && now - emittedAt_ < emitInterval))
            return;
        emittedAt_ = now;
        const double elapsed = Seconds(now - start_).count();
        CopyProgress progress;
        progress.phase = CopyPhase::verifying;
        progress.bytesDone = bytesDone_;
        progress.bytesTotal = bytesTotal_;
        progress.currentFile = currentFile;
        progress.bytesPerSecond = static_cast<double>(bytesDone_) / std::max(elapsed, 0.001);
        if (elapsed > beforeEstimates.count() && bytesDone_ > bytesTotal_ / 20 && bytesDone_ < bytesTotal_)
            progress.secondsRemaining =
                static_cast<double>(bytesTotal_ - bytesDone_) / progress.bytesPerSecond;
        run_.progress()(progress);
    }

    CopyRun& run_;
    CopyLanes& lanes_;
    const Clock::time_point start_ = Clock::now();
    Clock::time_point emittedAt_{};
    int64_t bytesDone_ = 0;
    int64_t bytesTotal_ = 0;
};

} // namespace

void verify(CopyRun& run, CopyLanes& lanes) {
    Verification(run, lanes).verifyAll();
}

} // namespace vh::copy
