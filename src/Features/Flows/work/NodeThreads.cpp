#include "Features/Flows/work/NodeThreads.h"

#include <algorithm>

namespace vh::automation {

NodeThreads::~NodeThreads() {
    {
        const std::lock_guard hold(lock_);
        isOver_ = true;
    }
    came_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void NodeThreads::run(std::function<void()> job) {
    const std::lock_guard hold(lock_);
    jobs_.push_back(std::move(job));
    if (jobs_.size() > idle_ && threads_.size() < most)
        threads_.emplace_back([this] { work(); });
    came_.notify_one();
}

void NodeThreads::work() {
    std::unique_lock hold(lock_);
    while (true) {
        ++idle_;
        came_.wait(hold, [this] { return isOver_ || !jobs_.empty(); });
        --idle_;
        if (jobs_.empty())
            return;
        const auto job = std::move(jobs_.front());
        jobs_.pop_front();
        hold.unlock();
        job();
        hold.lock();
    }
}

NodeWaits::~NodeWaits() {
    {
        const std::lock_guard hold(lock_);
        isOver_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

void NodeWaits::wait(int64_t seconds, std::function<void(End)> over) {
    constexpr int64_t century = int64_t{100} * 365 * 24 * 3600;
    const auto until =
        std::chrono::steady_clock::now() + std::chrono::seconds(std::clamp(seconds, int64_t{0}, century));
    const std::lock_guard hold(lock_);
    waiting_.emplace(until, std::move(over));
    if (!thread_.joinable())
        thread_ = std::thread([this] { work(); });
    changed_.notify_one();
}

void NodeWaits::work() {
    std::unique_lock hold(lock_);
    while (!isOver_) {
        const bool isCancelled = cancel_.isCancelled();
        Waiting over = takeOver(isCancelled);
        if (!over.empty()) {
            hold.unlock();
            for (const auto& [until, tell] : over)
                tell(isCancelled ? End::cancelled : End::elapsed);
            over.clear();
            hold.lock();
        } else if (waiting_.empty()) {
            changed_.wait(hold);
        } else {
            changed_.wait_until(
                hold, std::min(waiting_.begin()->first, std::chrono::steady_clock::now() + pollsCancel));
        }
    }
}

NodeWaits::Waiting NodeWaits::takeOver(bool isCancelled) {
    const auto end = isCancelled ? waiting_.end() : waiting_.upper_bound(std::chrono::steady_clock::now());
    Waiting over;
    for (auto each = waiting_.begin(); each != end;)
        over.insert(over.end(), waiting_.extract(each++));
    return over;
}

} // namespace vh::automation
