#pragma once

#include "Core/JobControl.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace vh::automation {

/// Work on threads of its own that is waited for no longer than a limit. What takes longer, or is cancelled, is asked to
/// stop, waited for a little more, and then left to end; the object waits for it when it goes. Any thread.
class LimitedWork {
public:
    enum class End { over, overTooLate, left };
    using Work = std::function<void(const JobControl& control)>;
    /// Who waits.
    struct Waiter {
        std::chrono::milliseconds limit;
        std::function<bool()> isCancelled;
        std::function<void(double fraction, std::string_view what)> progress; ///< only while it waits
    };

    explicit LimitedWork(std::chrono::milliseconds grace) : grace_(grace) {}
    ~LimitedWork();

    /// `work` may use only what it owns and what outlives this object, and must not throw.
    End run(const Waiter& waiter, Work work);

private:
    struct Job;
    using IsCancelled = std::function<bool()>;
    static bool waitUntil(Job& job, std::chrono::steady_clock::time_point deadline,
                          const IsCancelled& isCancelled);
    void forgetEnded();

    const std::chrono::milliseconds grace_;
    std::mutex mutex_;
    std::list<std::shared_ptr<Job>> left_;
};

} // namespace vh::automation
