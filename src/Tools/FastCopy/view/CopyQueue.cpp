#include "Tools/FastCopy/view/CopyQueue.h"

#include "Core/Printable.h"
#include "Platform/WholeDisks.h"
#include "Tools/FastCopy/FastCopier.h"
#include "Tools/FastCopy/view/CopyRows.h"
#include "app/ActivityCenter.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/AutomationLife.h"
#include "app/Background.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace vh::app {

namespace {

constexpr QLatin1String copyTool{"fast-copy"};

/// As often as what is shown changes; a copy tells no more often.
constexpr std::chrono::milliseconds collectEvery{150};

/// The newest of what a thread tells.
template <class T>
class Newest {
public:
    void put(const T& value) {
        const std::lock_guard guard(mutex_);
        value_ = value;
    }
    std::optional<T> take() {
        const std::lock_guard guard(mutex_);
        return std::exchange(value_, {});
    }

private:
    std::mutex mutex_;
    std::optional<T> value_;
};

/// A disk's image as the first destination's copy.
copy::CopyProgress progressOf(const automation::DiskCopyProgress& disk, size_t destinations) {
    if (disk.further)
        return *disk.further;
    copy::CopyProgress progress;
    progress.bytesPerDestination = disk.image.bytesTotal;
    progress.filesTotal = 1;
    progress.destinationBytes.assign(destinations, 0);
    if (!progress.destinationBytes.empty())
        progress.destinationBytes.front() = disk.image.bytesDone;
    return progress;
}

/// The image goes to the first of those that are left by then.
void dropRemoved(copy::CopyJob& job, std::shared_ptr<copy::CopyControl>& control) {
    std::vector<std::string> left;
    std::set<size_t> paused;
    control = std::make_shared<copy::CopyControl>();
    for (const size_t each : job.visibleIndices()) {
        if (job.paused.contains(each)) {
            paused.insert(left.size());
            control->setPaused(left.size(), true);
        }
        left.push_back(job.destinations[each]);
    }
    job.done.assign(left.size(), 0);
    job.destinations = std::move(left);
    job.paused = std::move(paused);
    job.removed.clear();
}

} // namespace

struct CopyQueue::Work {
    std::shared_ptr<copy::CopyControl> control = std::make_shared<copy::CopyControl>();
    std::shared_ptr<Newest<copy::CopyProgress>> progress = std::make_shared<Newest<copy::CopyProgress>>();
    std::shared_ptr<Newest<int64_t>> badBlocks = std::make_shared<Newest<int64_t>>();
    std::optional<JobToken> token;
    Background measuring;
    Background working;

    void stop() {
        control->cancel();
        measuring.cancel();
        working.cancel();
    }
};

CopyQueue::CopyQueue(AppContext& context, CopyDependencies dependencies)
    : context_(context), dependencies_(std::move(dependencies)) {
    collecting_.setInterval(collectEvery);
    connect(&collecting_, &QTimer::timeout, this, &CopyQueue::collect);
}

CopyQueue::~CopyQueue() {
    for (const auto& [id, work] : works_)
        work->stop(); // all at once, and then waits for each
}

copy::CopyJob* CopyQueue::find(const Uuid& id) {
    const auto found = std::ranges::find(jobs_, id, &copy::CopyJob::id);
    return found == jobs_.end() ? nullptr : &*found;
}

const copy::CopyJob* CopyQueue::job(const Uuid& id) const {
    const auto found = std::ranges::find(jobs_, id, &copy::CopyJob::id);
    return found == jobs_.end() ? nullptr : &*found;
}

bool CopyQueue::isActive() const {
    return std::ranges::any_of(jobs_, [](const auto& job) { return !job.isOver(); });
}

void CopyQueue::setRunTogether(bool together) {
    together_ = together;
    pump();
}

void CopyQueue::enqueue(copy::CopyJob job) {
    job.id = Uuid::random();
    job.number = ++lastNumber_;
    job.done.assign(job.destinations.size(), 0);
    auto& work = *works_.emplace(job.id, std::make_unique<Work>()).first->second;
    if (!job.bytes)
        measure(job, work);
    jobs_.push_back(std::move(job));
    pump();
}

void CopyQueue::measure(const copy::CopyJob& job, Work& work) {
    std::vector<std::string> paths;
    for (const copy::CopySource& each : job.sources)
        if (const auto* path = std::get_if<std::string>(&each))
            paths.push_back(*path);
    work.measuring.run(
        [paths, links = job.options.links](const Background::Task& task) {
            return copy::FastCopier::plan(paths, links, task.cancel);
        },
        [this, id = job.id](std::future<copy::CopyPlan> measured) {
            copy::CopyJob* const it = find(id);
            try {
                const copy::CopyPlan plan = measured.get();
                if (!it || it->bytes)
                    return;
                it->bytes = plan.bytes;
                it->fileCount = plan.fileCount;
                emit changed();
            } catch (const std::exception&) { // the copy itself says what is wrong
            }
        });
}

void CopyQueue::pump() {
    while (const auto next = copy::nextToStart(jobs_, together_))
        start(jobs_[*next]);
    emit changed();
}

void CopyQueue::start(copy::CopyJob& job) {
    Work& work = *works_.at(job.id);
    work.token.emplace(
        context_.activity().beginToken(CopyWords(context_).jobTitle(job), copyTool, AtClosing::isAsked));
    job.state = copy::CopyJob::State::running;
    context_.runStores(); // opened here: the thread that copies may not be the first to ask
    if (job.disk())
        startDisk(job, work);
    else
        startFiles(job, work);
    collecting_.start();
}

void CopyQueue::startFiles(copy::CopyJob& job, Work& work) {
    copy::CopyRequest request;
    for (const copy::CopySource& each : job.sources)
        request.sources.push_back(std::get<std::string>(each));
    request.destinations = job.destinations;
    request.options = job.options;
    request.manifest = job.manifest;
    work.working.run(
        [request, copyFiles = dependencies_.copyFiles, texts = context_.texts().current(),
         control = work.control, news = work.progress](const Background::Task& task) {
            return copyFiles(
                request, texts, control, [news](const copy::CopyProgress& progress) { news->put(progress); },
                task.cancel);
        },
        [this, id = job.id](std::future<copy::CopyResult> result) { finishFiles(id, std::move(result)); });
}

void CopyQueue::startDisk(copy::CopyJob& job, Work& work) {
    dropRemoved(job, work.control);
    const automation::DiskCopyRequest request{*job.disk(), job.destinations, job.options, job.unmount};
    work.working.run(
        [request, copyDisk = dependencies_.copyDisk, texts = context_.texts().current(),
         control = work.control, news = work.progress, bad = work.badBlocks](const Background::Task& task) {
            const auto tell = [&](const automation::DiskCopyProgress& progress) {
                news->put(progressOf(progress, request.destinations.size()));
                bad->put(progress.image.badBlocks);
            };
            return copyDisk(request, texts, control, tell, task.cancel);
        },
        [this, id = job.id](std::future<automation::DiskCopyResult> result) {
            finishDisk(id, std::move(result));
        });
}

void CopyQueue::finishFiles(const Uuid& id, std::future<copy::CopyResult> result) {
    copy::CopyJob& job = *find(id);
    try {
        copy::CopyResult end = result.get();
        job.manifests = std::move(end.manifests);
        job.summary = end.record.summary;
        if (end.error.empty()) {
            job.end(std::move(end.report));
        } else {
            job.error = std::move(end.error);
            job.state = end.record.outcome == Outcome::cancelled ? copy::CopyJob::State::stopped
                                                                 : copy::CopyJob::State::failed;
        }
    } catch (const std::exception& error) {
        job.error = error.what();
        job.state = copy::CopyJob::State::failed;
    }
    conclude(job);
}

void CopyQueue::finishDisk(const Uuid& id, std::future<automation::DiskCopyResult> result) {
    copy::CopyJob& job = *find(id);
    using End = automation::DiskCopyResult::End;
    try {
        automation::DiskCopyResult end = result.get();
        if (end.further)
            job.end(std::move(*end.further));
        job.state = end.end == End::imaged    ? copy::CopyJob::State::finished
                    : end.end == End::stopped ? copy::CopyJob::State::stopped
                                              : copy::CopyJob::State::failed;
        job.endedWell = end.record.outcome == Outcome::success;
        job.badBlocks = end.badBlocks;
        job.summary = std::move(end.message);
        if (!end.imagePath.empty())
            job.imagePath = std::move(end.imagePath);
    } catch (const std::exception& error) {
        job.error = error.what();
        job.state = copy::CopyJob::State::failed;
    }
    conclude(job);
}

void CopyQueue::conclude(copy::CopyJob& job) {
    job.rate = 0;
    job.secondsRemaining.reset();
    job.currentFile.clear();
    job.stopping = false;
    // Its thread's own call is what came here: it goes after that.
    QMetaObject::invokeMethod(
        this, [gone = std::shared_ptr<Work>(std::move(works_.extract(job.id).mapped()))] {},
        Qt::QueuedConnection);
    if (works_.empty())
        collecting_.stop();
    const copy::CopyJob over = job; // starting another one may move the list
    pump();
    emit ended(over);
}

void CopyQueue::collect() {
    bool isNew = false;
    for (copy::CopyJob& job : jobs_) {
        const auto found = works_.find(job.id);
        if (found == works_.end())
            continue;
        Work& work = *found->second;
        const auto progress = work.progress->take();
        if (!progress)
            continue;
        job.follow(*progress);
        job.badBlocks = work.badBlocks->take().value_or(job.badBlocks);
        const double fraction = job.fraction();
        context_.activity().setProgress(work.token->key(), fraction < 0 ? std::optional<double>() : fraction);
        isNew = true;
    }
    if (isNew)
        pump(); // a copy whose last destination is full lets the next one begin
}

void CopyQueue::togglePause(const Uuid& id, size_t destination) {
    copy::CopyJob* const job = find(id);
    if (!job || job->isOver() || destination >= job->destinations.size() ||
        job->removed.contains(destination))
        return;
    const bool pauses = job->paused.erase(destination) == 0;
    if (pauses)
        job->paused.insert(destination);
    works_.at(id)->control->setPaused(destination, pauses);
    pump();
}

void CopyQueue::remove(const Uuid& id, size_t destination) {
    copy::CopyJob* const job = find(id);
    if (!job || job->isOver() || destination >= job->destinations.size())
        return;
    if (job->visibleIndices() == std::vector{destination}) {
        stop(id);
        return;
    }
    job->removed.insert(destination);
    job->paused.erase(destination);
    works_.at(id)->control->remove(destination);
    pump();
}

void CopyQueue::stop(const Uuid& id) {
    copy::CopyJob* const job = find(id);
    if (!job || job->isOver())
        return;
    if (!job->isActive()) {
        takeOff(id);
        return;
    }
    job->stopping = true;
    works_.at(id)->stop();
    emit changed();
}

void CopyQueue::takeOff(const Uuid& id) {
    const copy::CopyJob* const job = find(id);
    if (!job || job->isActive())
        return;
    works_.erase(id);
    std::erase_if(jobs_, [&](const auto& each) { return each.id == id; });
    pump();
}

void CopyQueue::clearFinished() {
    std::erase_if(jobs_, [](const auto& each) { return each.isOver(); });
    emit changed();
}

} // namespace vh::app
