#include "HelperKit/DeviceJobRunner.h"

#include "Core/Uuid.h"
#include "HelperKit/DeviceImage.h"
#include "HelperKit/HelperServiceError.h"

#include <algorithm>
#include <list>
#include <mutex>
#include <thread>

namespace vh::helper {

namespace {

constexpr size_t mostRunning = 4;
/// How many are remembered once they are over.
constexpr size_t mostRemembered = 64;

struct Job {
    std::string id;
    uint32_t owner;
    std::string connection;
    std::string destination;
    std::unique_ptr<DeviceImage> image = nullptr; ///< nothing while both ends are being opened
    CancelToken cancel = {};
    std::thread thread = {};

    DeviceJobStatus status() const { return image ? image->status() : DeviceJobStatus(); }
};

} // namespace

struct DeviceJobRunner::State {
    mutable std::mutex mutex;
    std::list<Job> jobs; ///< oldest first

    /// Of another user's jobs nobody learns.
    Job* find(const std::string& id, uint32_t owner) {
        for (Job& job : jobs)
            if (job.id == id && job.owner == owner)
                return &job;
        return nullptr;
    }
    size_t running() const {
        return size_t(std::ranges::count_if(jobs, [](const Job& job) { return !job.status().isOver(); }));
    }
    /// Two that write one file would each take the other's part away.
    bool isWriting(const std::string& destination) const {
        return std::ranges::any_of(
            jobs, [&](const Job& job) { return job.destination == destination && !job.status().isOver(); });
    }
    void forgetOldest() {
        for (auto job = jobs.begin(); job != jobs.end() && jobs.size() >= mostRemembered;)
            if (job->status().isOver()) {
                job->thread.join();
                job = jobs.erase(job);
            } else {
                ++job;
            }
    }
};

DeviceJobRunner::DeviceJobRunner() : state_(std::make_unique<State>()) {}

DeviceJobRunner::~DeviceJobRunner() {
    for (Job& job : state_->jobs)
        job.cancel.cancel();
    for (Job& job : state_->jobs)
        job.thread.join();
}

std::string DeviceJobRunner::start(const DeviceJobSpec& spec, uint32_t owner, const std::string& connection) {
    std::unique_lock lock(state_->mutex);
    if (state_->running() >= mostRunning)
        throw HelperServiceError::badJobSpec("too many are running already");
    if (state_->isWriting(spec.destination))
        throw HelperServiceError::badJobSpec(spec.destination + " is being written already");
    state_->forgetOldest();
    const auto job = state_->jobs.insert(state_->jobs.end(),
                                         Job{Uuid::random().text(), owner, connection, spec.destination});
    lock.unlock();
    try {
        auto image = std::make_unique<DeviceImage>(spec, owner);
        lock.lock();
        job->image = std::move(image);
        job->thread = std::thread([&job = *job] { job.image->make(job.cancel); });
        return job->id;
    } catch (const std::exception& error) {
        if (!lock.owns_lock())
            lock.lock();
        state_->jobs.erase(job);
        throw HelperServiceError::badJobSpec(error.what());
    }
}

DeviceJobStatus DeviceJobRunner::status(const std::string& id, uint32_t owner) const {
    const std::lock_guard guard(state_->mutex);
    if (const Job* job = state_->find(id, owner))
        return job->status();
    throw HelperServiceError::unknownJob(id);
}

bool DeviceJobRunner::cancel(const std::string& id, uint32_t owner) {
    const std::lock_guard guard(state_->mutex);
    Job* const job = state_->find(id, owner);
    if (job == nullptr || job->status().isOver())
        return false;
    job->cancel.cancel();
    return true;
}

void DeviceJobRunner::cancelAllOf(const std::string& connection) {
    const std::lock_guard guard(state_->mutex);
    for (Job& job : state_->jobs)
        if (job.connection == connection)
            job.cancel.cancel();
}

bool DeviceJobRunner::isBusy() const {
    const std::lock_guard guard(state_->mutex);
    return state_->running() > 0;
}

} // namespace vh::helper
