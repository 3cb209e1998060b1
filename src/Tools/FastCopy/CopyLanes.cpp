#include "Tools/FastCopy/CopyLanes.h"

namespace vh::copy {

CopyLanes::CopyLanes(size_t count, Threads threads) : threads_(threads), isDue_(count) {
    if (threads_ == Threads::own)
        for (size_t lane = 0; lane < count; ++lane)
            running_.emplace_back([this, lane] { serve(lane); });
}

CopyLanes::~CopyLanes() {
    {
        const std::lock_guard guard(mutex_);
        ends_ = true;
    }
    begun_.notify_all();
    for (std::thread& each : running_)
        each.join();
}

void CopyLanes::start(const std::vector<size_t>& lanes, std::function<void(size_t)> work) {
    wait();
    if (threads_ == Threads::none) {
        for (const size_t lane : lanes)
            work(lane);
        return;
    }
    {
        const std::lock_guard guard(mutex_);
        work_ = std::move(work);
        for (const size_t lane : lanes)
            isDue_[lane] = true;
        open_ = lanes.size();
    }
    begun_.notify_all();
}

void CopyLanes::wait() {
    std::unique_lock lock(mutex_);
    done_.wait(lock, [this] { return open_ == 0; });
}

bool CopyLanes::waitFor(std::chrono::milliseconds most) {
    std::unique_lock lock(mutex_);
    return done_.wait_for(lock, most, [this] { return open_ == 0; });
}

void CopyLanes::serve(size_t lane) {
    for (std::unique_lock lock(mutex_);;) {
        begun_.wait(lock, [&] { return isDue_[lane] || ends_; });
        if (!isDue_[lane])
            return;
        isDue_[lane] = false;
        lock.unlock();
        work_(lane);
        lock.lock();
        if (--open_ == 0)
            done_.notify_all();
    }
}

} // namespace vh::copy
