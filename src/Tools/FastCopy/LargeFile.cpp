#include "Tools/FastCopy/LargeFile.h"

#include "Core/ErrorMessage.h"
#include "Platform/SourceFile.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>

namespace vh::copy {

namespace {

/// One file on its way.
class LargeFile {
public:
    LargeFile(CopyRun& run, SourceFile source, std::vector<std::unique_ptr<CopyDestination>>& destinations,
              CopyLanes& lanes, std::unique_ptr<char[]> (&blocks)[2], size_t item,
              const std::vector<size_t>& takers)
        : run_(run), destinations_(destinations), lanes_(lanes), blocks_(blocks), item_(item),
          relative_(run.relativeOf(item)), takers_(takers), source_(std::move(source)) {}

    void copy() {
        begin();
        try {
            stream();
        } catch (const SystemError& error) {
            lanes_.wait();
            failAll(messageOf(error));
        }
        lanes_.wait();
        if (run_.isStopped())
            abandon();
        else
            end();
    }

private:
    void begin() {
        for (const size_t taker : takers_)
            verdicts_[taker];
        lanes_.run(takers_, [this](size_t taker) {
            verdicts_.find(taker)->second = destinations_[taker]->begin(relative_, source_);
        });
        for (const auto& [taker, verdict] : verdicts_)
            if (!verdict)
                open_.push_back(taker);
    }

    void stream() {
        int64_t offset = 0;
        while (!open_.empty()) {
            const auto stretch = source_.stretchFrom(offset);
            if (!stretch)
                break;
            if (!copyStretch(*stretch))
                return;
            offset = stretch->end;
        }
        end_ = std::max(end_, source_.hasHoles() ? source_.size() : end_);
    }

    /// False when there is nothing more to copy.
    bool copyStretch(const SourceFile::Stretch& stretch) {
        for (int64_t offset = stretch.begin; offset < stretch.end;) {
            leaveOutWhoIsNotTaking();
            if (run_.isStopped() || open_.empty())
                return false;
            const int64_t copied = copyBlock(offset, std::min<int64_t>(chunkSize, stretch.end - offset));
            if (copied == 0)
                return false;
            offset += copied;
            end_ = offset;
            if (offset > source_.size())
                return false; // it grows, which shows
            run_.countRead(copied);
            run_.emit(CopyRun::Emit::throttled, relative_);
        }
        return true;
    }

    /// Reads while the block before is being written.
    int64_t copyBlock(int64_t offset, int64_t most) {
        std::unique_ptr<char[]>& room = blocks_[turn_];
        turn_ = 1 - turn_;
        if (!room)
            room = std::make_unique_for_overwrite<char[]>(chunkSize);
        const std::span<char> block(room.get(), static_cast<size_t>(most));
        const size_t got = source_.readAt(offset, block);
        waitForBlock();
        if (got == 0 || open_.empty())
            return 0;
        lanes_.start(open_, [this, offset, bytes = std::string_view(block.data(), got)](size_t taker) {
            destinations_[taker]->write(offset, bytes);
        });
        count(static_cast<int64_t>(got));
        return static_cast<int64_t>(got);
    }

    void waitForBlock() {
        lanes_.wait();
        std::erase_if(open_, [&](size_t taker) { return !destinations_[taker]->isGood(); });
    }

    void count(int64_t bytes) {
        for (const size_t taker : open_) {
            run_.count(taker, bytes);
            counted_[taker] += bytes;
        }
    }

    void leaveOutWhoIsNotTaking() {
        for (const size_t taker : open_)
            if (!run_.control().takes(taker))
                dropped_.push_back(taker);
        if (dropped_.empty())
            return;
        lanes_.wait();
        std::erase_if(open_, [&](size_t taker) { return std::ranges::count(dropped_, taker) > 0; });
    }

    void abandon() {
        for (const size_t taker : takers_)
            if (verdicts_[taker])
                run_.book(item_, taker, *verdicts_[taker], 0);
            else
                takeBack(taker);
        run_.stop();
    }

    void takeBack(size_t taker) {
        destinations_[taker]->drop();
        run_.takeBack(taker, counted_[taker]);
    }

    void failAll(const Message& why) {
        for (const size_t taker : takers_)
            if (!verdicts_[taker]) {
                destinations_[taker]->drop();
                verdicts_[taker] = failedLanding(why);
            }
        open_.clear();
    }

    void end() {
        for (const size_t taker : dropped_)
            if (!verdicts_[taker]) {
                takeBack(taker);
                if (!run_.control().isRemoved(taker))
                    run_.defer(item_, taker);
            }
        if (source_.hasChanged())
            failAll(sourceChanged());
        std::vector<size_t> ending;
        for (const auto& [taker, verdict] : verdicts_)
            if (!verdict && std::ranges::count(dropped_, taker) == 0)
                ending.push_back(taker);
        lanes_.run(ending, [this](size_t taker) {
            verdicts_.find(taker)->second = destinations_[taker]->end(source_, end_);
        });
        std::vector<Landing*> streamed;
        for (auto& [taker, verdict] : verdicts_)
            if (verdict && verdict->state != CopiedFileState::skipped &&
                verdict->state != CopiedFileState::cloned)
                streamed.push_back(&*verdict);
        if (dropped_.empty())
            tellWhenNobodyTookIt(streamed);
        for (const auto& [taker, verdict] : verdicts_)
            if (verdict)
                run_.book(item_, taker, *verdict, counted_[taker]);
        run_.emit(CopyRun::Emit::throttled, relative_);
    }

    CopyRun& run_;
    std::vector<std::unique_ptr<CopyDestination>>& destinations_;
    CopyLanes& lanes_;
    std::unique_ptr<char[]> (&blocks_)[2];
    const size_t item_;
    const std::string relative_;
    const std::vector<size_t>& takers_;
    SourceFile source_;
    std::map<size_t, std::optional<Landing>> verdicts_;
    std::map<size_t, int64_t> counted_; ///< bytes counted as done
    std::vector<size_t> open_;          ///< those that are being written
    std::vector<size_t> dropped_;
    int turn_ = 0;
    int64_t end_ = 0; ///< how far the source was copied
};

} // namespace

void LargeFiles::copy(size_t item, const std::vector<size_t>& takers) {
    try {
        LargeFile(run_, sources_.open(item), destinations_, lanes_, blocks_, item, takers).copy();
    } catch (const SystemError& error) { // the source cannot be opened
        for (const size_t taker : takers)
            run_.book(item, taker, failedLanding(messageOf(error)), 0);
    }
}

} // namespace vh::copy
