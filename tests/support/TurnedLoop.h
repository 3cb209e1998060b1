#pragma once

#include "Core/Date.h"
#include "Platform/MainLoop.h"
#include "Platform/Posix/LoopWork.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <string_view>

namespace vh::test {

/// A main loop whose time a test turns by hand. Descriptors and what other threads post are real.
class TurnedLoop : public MainLoop {
public:
    /// A Sunday, at noon UTC.
    static constexpr Date defaultStart =
        std::chrono::sys_days(std::chrono::year(2026) / 3 / 1) + std::chrono::hours(12);

    explicit TurnedLoop(Date start = defaultStart) : date_(start) {}

    /// The date that goes with the loop's time. The loop must outlive it; the loop's thread alone turns it, any may ask.
    Clock clock() const;
    /// Sets the date without letting any time pass, as after a correction of the clock or a sleep of the machine.
    void setDate(Date date) { date_ = date; }

    /// Lets time pass: calls every timer at its own moment, and after each what was posted by then.
    void advance(std::chrono::milliseconds time);
    /// Calls what is posted and whose descriptor is ready, until nothing more is. Does not wait; time stands still.
    void pump();
    /// Pumps until the predicate holds, waiting for descriptors and other threads, time standing still. A test failure
    /// that names `what`, and false, when that takes longer than `limit` of real time.
    bool waitUntil(std::string_view what, const std::function<bool()>& holds,
                   std::chrono::milliseconds limit = std::chrono::seconds(10));

    void post(std::function<void()> f) override;
    Token after(std::chrono::milliseconds delay, std::function<void()> f) override;
    Token every(std::chrono::milliseconds period, std::function<void()> f) override;
    Token watch(int descriptor, Readiness readiness, std::function<void()> f) override;

private:
    bool turn(std::chrono::milliseconds wait);
    void passUntil(LoopWork::Time time);

    LoopWork work_;
    LoopWork::Time now_{0};
    std::atomic<Date> date_;
};

} // namespace vh::test
