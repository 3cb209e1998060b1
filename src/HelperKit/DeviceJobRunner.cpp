#include "HelperKit/DeviceJobRunner.h"

#include "Core/Uuid.h"
#include "HelperKit/DeviceImage.h"
#include "HelperKit/HelperServiceError.h"

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
    std::string connection;
    std::unique_ptr<DeviceImage> image;
    CancelToken cancel;
    std::thread thread;

    bool isOver() const { return image->status().isOver(); }
};

} // namespace

struct DeviceJobRunner::State {
    mutable std::mutex mutex;
    std::list<Job> jobs; ///< oldest first

    Job* find(const std::string& id) {
        for (Job& job : jobs)
            if (job.id == id)
                return &job;
        return nullptr;
    }
    size_t running() const {
        size_t count = 0;
        for (const Job& job : jobs)
            count += job.isOver() ? 0 : 1;
        return count;
    }
    void forgetOldest() {
        for (auto job = jobs.begin(); job != jobs.end() && jobs.size() >= mostRemembered;)
            if (job->isOver()) {
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
    std::unique_ptr<DeviceImage> image;
    try {
        image = std::make_unique<DeviceImage>(spec, owner);
    } catch (const std::exception& error) {
        throw HelperServiceError::badJobSpec(error.what());
    }
    const std::lock_guard guard(state_->mutex);
    if (state_->running() >= mostRunning)
        throw HelperServiceError::badJobSpec("too many are running already");
    state_->forgetOldest();
    Job& job = state_->jobs.emplace_back();
    job.id = Uuid::random().text();
    job.connection = connection;
    job.image = std::move(image);
    job.thread = std::thread([&job] { job.image->make(job.cancel); });
    return job.id;
}

DeviceJobStatus DeviceJobRunner::status(const std::string& id) const {
    const std::lock_guard guard(state_->mutex);
    if (const Job* job = state_->find(id))
        return job->image->status();
    throw HelperServiceError::unknownJob(id);
}

bool DeviceJobRunner::cancel(const std::string& id) {
    const std::lock_guard guard(state_->mutex);
    Job* const job = state_->find(id);
    if (job == nullptr || job->isOver())
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
