#include "Automation/Worker.h"

namespace vh::automation {

Worker::Worker(MainLoop& loop) : loop_(loop), alive_(std::make_shared<bool>(true)) {}

Worker::~Worker() {
    *alive_ = false;
    for (std::thread& job : jobs_)
        job.join();
}

void Worker::run(std::function<void()> work, std::function<void()> done) {
    const auto job = jobs_.emplace(jobs_.end());
    *job = std::thread([this, job, work = std::move(work), done = std::move(done)]() mutable {
        work();
        post([this, job, done = std::move(done)] {
            job->join();
            jobs_.erase(job);
            done();
        });
    });
}

void Worker::post(std::function<void()> f) const {
    loop_.post([alive = alive_, f = std::move(f)] {
        if (*alive)
            f();
    });
}

} // namespace vh::automation
