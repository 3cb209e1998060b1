#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace vh::copy {

/// A thread for each destination, so that all of them work on the same piece at once.
class CopyLanes {
public:
    enum class Threads {
        own,
        none ///< everything on the caller's thread, one lane after the other
    };
    explicit CopyLanes(size_t count, Threads threads = Threads::own);
    ~CopyLanes();
    CopyLanes(const CopyLanes&) = delete;
    CopyLanes& operator=(const CopyLanes&) = delete;

    /// Begins `work` on these lanes, each with its own number; what it refers to stays until wait has returned. Work
    /// does not throw. Waits for what was begun before.
    void start(const std::vector<size_t>& lanes, std::function<void(size_t lane)> work);
    void wait();
    /// False when they are still at work after that long.
    bool waitFor(std::chrono::milliseconds most);
    void run(const std::vector<size_t>& lanes, std::function<void(size_t lane)> work) {
        start(lanes, std::move(work));
        wait();
    }

private:
    void serve(size_t lane);

    const Threads threads_;
    std::mutex mutex_;
    std::condition_variable begun_, done_;
    std::function<void(size_t)> work_;
    std::vector<bool> isDue_;
    size_t open_ = 0;
    bool ends_ = false;
    std::vector<std::thread> running_;
};

} // namespace vh::copy
