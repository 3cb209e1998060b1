#include "Features/Optimize/work/LimitedWork.h"

#include <utility>

namespace vh::automation {

namespace {

/// How soon a cancel is noticed.
constexpr std::chrono::milliseconds pollsCancel{50};

} // namespace

struct LimitedWork::Job {
    ~Job() {
        if (thread.joinable())
            thread.join();
    }

    std::thread thread;
    CancelToken cancel;
    std::mutex mutex;
    std::condition_variable ended;
    bool isOver = false;
    std::mutex progressMutex;
    const Waiter* waiter = nullptr; ///< nothing once nobody waits any more
};

LimitedWork::~LimitedWork() {
    for (const auto& job : left_)
        job->cancel.cancel();
}

LimitedWork::End LimitedWork::run(const Waiter& waiter, Work work) {
    forgetEnded();
    const auto deadline = std::chrono::steady_clock::now() + waiter.limit;
    const auto job = std::make_shared<Job>();
    job->waiter = &waiter;
    job->thread = std::thread([raw = job.get(), work = std::move(work)]() mutable {
        work({raw->cancel, [raw](double fraction, std::string_view what) {
                  const std::lock_guard hold(raw->progressMutex);
                  if (raw->waiter)
                      raw->waiter->progress(fraction, what);
              }});
        work = nullptr; // what it owns goes before anyone is told
        const std::lock_guard hold(raw->mutex);
        raw->isOver = true;
        raw->ended.notify_all();
    });
    if (waitUntil(*job, deadline, waiter.isCancelled))
        return End::over;
    const bool isTooLate = !waiter.isCancelled();
    job->cancel.cancel();
    if (waitUntil(*job, std::chrono::steady_clock::now() + grace_, [] { return false; }))
        return isTooLate ? End::overTooLate : End::over;
    {
        const std::lock_guard hold(job->progressMutex);
        job->waiter = nullptr;
    }
    const std::lock_guard hold(mutex_);
    left_.push_back(job);
    return End::left;
}

/// Whether it ended before the deadline and the cancel.
bool LimitedWork::waitUntil(Job& job, std::chrono::steady_clock::time_point deadline,
                            const IsCancelled& isCancelled) {
    std::unique_lock hold(job.mutex);
    while (!job.isOver) {
        const auto now = std::chrono::steady_clock::now();
        if (now >= deadline || isCancelled())
            return false;
        job.ended.wait_until(hold, std::min(deadline, now + pollsCancel));
    }
    return true;
}

void LimitedWork::forgetEnded() {
    const std::lock_guard hold(mutex_);
    left_.remove_if([](const auto& job) {
        const std::lock_guard holdJob(job->mutex);
        return job->isOver;
    });
}

} // namespace vh::automation
