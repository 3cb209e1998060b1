#pragma once

#include "Platform/MainLoop.h"
#include "Platform/Posix/Pipe.h"

#include <deque>
#include <mutex>
#include <optional>
#include <vector>

namespace vh {

/// What a main loop has to do, without its clock: who owns it says what time it is and how long to wait. All but post
/// and wake on the loop's thread. What is called may let go of any token and may turn the loop itself.
class LoopWork {
public:
    using Time = std::chrono::nanoseconds; ///< since whenever the owner's clock began

    /// Throws SystemError.
    LoopWork();

    void post(std::function<void()> f);
    /// Ends the present or the next wait for descriptors.
    void wake();

    /// Calls `f` at `due`, and every `period`, which is above nought, from then on when there is one.
    MainLoop::Token at(Time due, std::optional<Time> period, std::function<void()> f);
    MainLoop::Token watch(int descriptor, MainLoop::Readiness readiness, std::function<void()> f);

    /// Each of these calls what stood ready when it began, and not what came meanwhile. True when it called anything.
    bool runPosted();
    bool runDue(Time now);
    /// Waits until a descriptor is ready, something was posted, a signal came or `wait` is over; -1 ms waits for ever.
    bool runReady(std::chrono::milliseconds wait);

    std::optional<Time> nextDue();

private:
    struct Timer {
        Time due;
        std::optional<Time> period;
        std::function<void()> f;
        bool isOver = false;
    };
    struct Watch {
        int descriptor;
        MainLoop::Readiness readiness;
        std::function<void()> f;
        bool isOver = false;
    };
    template <class Entry>
    static MainLoop::Token tokenOf(const std::shared_ptr<Entry>& entry);

    Pipe waking_;
    std::mutex mutex_; ///< of the next two
    std::deque<std::function<void()>> posted_;
    bool isAwake_ = false; ///< a byte lies in the pipe
    std::vector<std::shared_ptr<Timer>> timers_;
    std::vector<std::shared_ptr<Watch>> watches_;
};

} // namespace vh
