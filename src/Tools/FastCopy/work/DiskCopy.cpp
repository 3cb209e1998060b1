#include "Tools/FastCopy/work/DiskCopy.h"

#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "Core/RunJournal.h"
#include "Core/Texts.h"
#include "Core/ToolTexts.h"
#include "HelperKit/HelperClient.h"
#include "Platform/PartialSuffix.h"
#include "Tools/FastCopy/CopyError.h"
#include "Tools/FastCopy/CopyRecord.h"
#include "Tools/FastCopy/FastCopier.h"
#include "Tools/FastCopy/HashSidecar.h"
#include "Tools/FastCopy/work/DiskCopyCheck.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <thread>

namespace vh::automation {

namespace {

using copy::CopyControl;
using copy::CopyProgress;
using helper::DeviceJobPhase;
using helper::DeviceJobStatus;
using helper::HelperClientError;
using End = DiskCopyResult::End;

/// One image on its way, with its record.
class DiskCopying {
public:
    DiskCopying(const DiskCopyRequest& request, const DeviceJobs& jobs, const Folders& folders,
                const RunStores& runs, const Texts& texts, std::shared_ptr<CopyControl> control,
                const std::function<void(const DiskCopyProgress&)>& progress, const CancelToken& cancel)
        : request_(request), jobs_(jobs), folders_(folders), runs_(runs), texts_(texts),
          control_(std::move(control)), report_(progress) {
        control_->follow(cancel);
    }

    DiskCopyResult run() {
        const auto run =
            runs_.log.begin(copy::toolID, request_.trigger,
                            copy::detailsOf({"/dev/" + request_.disk.bsdName}, request_.destinations));
        journal_ = runs_.journals.open(run, toolName(texts_, copy::toolID));
        try {
            image();
        } catch (const DiskCopyRefusal& error) {
            fail(error.message());
        } catch (const Cancelled&) {
            stop();
        } catch (const std::exception& error) {
            failOrStop(messageOf(error));
        }
        if (result_.end == End::imaged)
            copyOn();
        finish();
        return std::move(result_);
    }

private:
    bool isStopped() const { return control_->isCancelled() || control_->isRemoved(first_); }

    /// The first that nobody has taken out.
    void chooseFirst() {
        while (first_ < request_.destinations.size() && control_->isRemoved(first_))
            ++first_;
        if (first_ == request_.destinations.size())
            throw Cancelled();
    }

    void image() {
        chooseFirst();
        plan_ = planDiskCopy(request_, first_, jobs_, folders_, runs_.log.now(), texts_);
        if (isStopped())
            throw Cancelled();
        unmount(); // who unmounts may be asked for a password, and think better of it meanwhile
        if (isStopped())
            throw Cancelled();
        const std::string id = jobs_.start({helper::DeviceJobKind::image, plan_.disk.device, plan_.image});
        result_.imagePath = plan_.image;
        watch(id);
        conclude();
    }

    void unmount() {
        if (!plan_.disk.isMounted)
            return;
        try {
            jobs_.unmount(plan_.disk);
        } catch (const std::exception& error) {
            throw DiskCopyRefusal({"fast-copy.disk-unmount-failed",
                                   {{"disk", printable(plan_.disk.name)}, {"reason", messageOf(error)}}});
        }
    }

    /// Until the job is over. A helper that knows it no longer was started anew, and what the old one left goes.
    void watch(const std::string& id) {
        bool isAsked = false;
        try {
            for (now_.image = jobs_.status(id); !now_.image.isOver(); now_.image = jobs_.status(id)) {
                tell();
                if (isStopped() && !std::exchange(isAsked, true))
                    jobs_.cancel(id);
                std::this_thread::sleep_for(jobs_.interval);
            }
            tell();
        } catch (const HelperClientError& error) {
            std::error_code ignored;
            std::filesystem::remove(plan_.image + std::string(partialSuffix), ignored);
            if (error.kind == HelperClientError::Kind::refused)
                throw HelperClientError(HelperClientError::Kind::restarted, error.words);
            throw;
        }
    }

    void conclude() {
        const DeviceJobStatus& job = now_.image;
        result_.badBlocks = job.badBlocks;
        if (job.phase != DeviceJobPhase::done)
            return failOrStop(Message::literal(printable(job.error)));
        result_.end = End::imaged;
        result_.sha256 = job.sha256;
        const std::string name = printable(plan_.disk.name);
        say(job.badBlocks > 0
                ? Message{"fast-copy.disk-image-with-holes", {{"disk", name}, {"blocks", job.badBlocks}}}
                : Message{"fast-copy.disk-image-complete", {{"disk", name}}});
        journal_->done({plan_.disk.device, plan_.image, job.bytesTotal, "copied", job.sha256});
        try {
            copy::writeHashSidecar(plan_.image, job.sha256);
        } catch (const std::exception& error) {
            sidecarFailure_ = Message{"fast-copy.disk-sidecar-failed", {{"reason", messageOf(error)}}};
            result_.sidecarFailure = worded(*sidecarFailure_, texts_);
        }
    }

    void say(Message said) {
        said_ = std::move(said);
        result_.message = worded(said_, texts_);
    }
    void fail(Message why) {
        result_.end = End::failed;
        say(std::move(why));
    }
    void stop() {
        result_.end = End::stopped;
        say({result_.imagePath.empty() ? "fast-copy.summary.stopped"
                                       : "fast-copy.disk-cancelled-partial-removed",
             {}});
    }
    void failOrStop(Message why) {
        if (isStopped() || now_.image.phase == DeviceJobPhase::cancelled)
            stop();
        else
            fail(std::move(why));
    }

    /// The image's own place counts as taken out, so that the others keep their numbers.
    void copyOn() {
        std::vector<std::string> sources{plan_.image};
        if (result_.sidecarFailure.empty())
            sources.push_back(copy::sidecarOf(plan_.image));
        if (request_.destinations.size() == first_ + 1)
            return;
        control_->remove(first_);
        try {
            result_.further = copy::FastCopier(control_).copy(
                sources, request_.destinations, request_.options, [this](const CopyProgress& progress) {
                    now_.further = progress;
                    tell();
                });
        } catch (const std::exception& error) {
            problems_.push_back(messageOf(error));
            return;
        }
        book(*result_.further, sources);
    }

    void book(copy::CopyReport& report, const std::vector<std::string>& sources) {
        copies_ = copy::summaryOf(report);
        journal_->add(copy::rowsOf(report, sources));
        std::ranges::move(report.problems(), std::back_inserter(problems_));
        copy::DestinationReport& own = report.destinations[first_];
        own.removed = false;
        own.copied = static_cast<int64_t>(sources.size());
        own.bytes = now_.image.bytesTotal;
    }

    void tell() const {
        if (report_)
            report_(now_);
    }

    void finish() {
        RunMetrics metrics;
        if (result_.end == End::imaged) {
            metrics[RunMetric::bytesImaged] = static_cast<double>(now_.image.bytesTotal);
            metrics[RunMetric::badBlocks] = static_cast<double>(result_.badBlocks);
        }
        if (sidecarFailure_)
            problems_.push_back(*sidecarFailure_);
        if (result_.end == End::failed)
            problems_.push_back(said_);
        if (!problems_.empty())
            metrics[RunMetric::errors] = static_cast<double>(problems_.size());
        result_.record = journal_->finish(outcome(), RunWords(summary(), texts_, problems_), metrics);
    }

    Outcome outcome() const {
        if (result_.end == End::failed)
            return Outcome::failed;
        if (result_.end == End::stopped ||
            (result_.further && result_.further->outcome == copy::CopyOutcome::stopped))
            return Outcome::cancelled;
        return result_.badBlocks > 0 || !problems_.empty() ? Outcome::warning : Outcome::success;
    }

    Messages summary() const {
        if (result_.end != End::imaged)
            return {said_};
        Messages all{
            {sidecarFailure_ ? "fast-copy.disk-history-imaged-no-hash" : "fast-copy.disk-history-imaged",
             {{"disk", printable(plan_.disk.name)},
              {"path", printable(plan_.image)},
              {"bytes", ByteCount{now_.image.bytesTotal}}}}};
        if (result_.badBlocks > 0)
            all.push_back(said_);
        all.insert(all.end(), copies_.begin(), copies_.end());
        return all;
    }

    const DiskCopyRequest& request_;
    const DeviceJobs& jobs_;
    const Folders& folders_;
    const RunStores& runs_;
    const Texts& texts_;
    const std::shared_ptr<CopyControl> control_;
    const std::function<void(const DiskCopyProgress&)>& report_;

    size_t first_ = 0; ///< where the image goes
    DiskCopyPlan plan_;
    std::unique_ptr<RunJournal> journal_;
    DiskCopyProgress now_;
    DiskCopyResult result_;
    Message said_; ///< that of result_.message
    std::optional<Message> sidecarFailure_;
    Messages problems_;
    Messages copies_; ///< what came of copying the image on
};

} // namespace

copy::RescueDisk sourceOf(const DiskFacts& disk) {
    return {disk.bsdName, disk.name, disk.bytes, disk.isMounted};
}

std::string imageNameOf(const copy::RescueDisk& disk, Date now, const LocalCalendar& calendar) {
    std::string name = disk.name;
    std::ranges::replace(name, ' ', '-');
    std::ranges::replace(name, '/', '-');
    const WallTime at = calendar.wallTime(now);
    return fmt::format("{}-{:04}{:02}{:02}-{:02}{:02}.img", name, at.year, at.month, at.day, at.hour,
                       at.minute);
}

DiskCopyResult runDiskCopy(const DiskCopyRequest& request, const DeviceJobs& jobs, const Folders& folders,
                           const RunStores& runs, const Texts& texts,
                           const std::shared_ptr<CopyControl>& control,
                           const std::function<void(const DiskCopyProgress&)>& progress,
                           const CancelToken& cancel) {
    return DiskCopying(request, jobs, folders, runs, texts, control, progress, cancel).run();
}

} // namespace vh::automation
