#pragma once

#include "Platform/CancelToken.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace vh::automation {

/// Threads for nodes that block, made when they are needed. Everything given to it must end before it goes.
class NodeThreads {
public:
    /// So many nodes work at once; more wait for their turn.
    static constexpr size_t most = 16;

    NodeThreads() = default;
    ~NodeThreads();
    NodeThreads(const NodeThreads&) = delete;
    NodeThreads& operator=(const NodeThreads&) = delete;

    /// `job` may not throw.
    void run(std::function<void()> job);

private:
    void work();

    std::mutex lock_;
    std::condition_variable came_;
    std::deque<std::function<void()>> jobs_;
    std::vector<std::thread> threads_;
    size_t idle_ = 0;
    bool isOver_ = false;
};

/// Any number of things that wait for a moment or a stop, on one thread. What still waits when it goes is dropped.
class NodeWaits {
public:
    /// How soon a stop is noticed.
    static constexpr std::chrono::milliseconds pollsCancel{50};
    enum class End { elapsed, cancelled };

    explicit NodeWaits(CancelToken cancel) : cancel_(std::move(cancel)) {}
    ~NodeWaits();
    NodeWaits(const NodeWaits&) = delete;
    NodeWaits& operator=(const NodeWaits&) = delete;

    /// Calls `over` once, on the waiting thread; it may not throw. More seconds than a century count as one.
    void wait(int64_t seconds, std::function<void(End)> over);

private:
    using Time = std::chrono::steady_clock::time_point;
    using Waiting = std::multimap<Time, std::function<void(End)>>;
    void work();
    Waiting takeOver(bool isCancelled);

    const CancelToken cancel_;
    std::mutex lock_;
    std::condition_variable changed_;
    Waiting waiting_;
    bool isOver_ = false;
    std::thread thread_;
};

} // namespace vh::automation
