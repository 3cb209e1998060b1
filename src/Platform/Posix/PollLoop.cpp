#include "Platform/PollLoop.h"

#include "Platform/Posix/LoopWork.h"

#include <algorithm>
#include <atomic>

namespace vh {

namespace {

LoopWork::Time now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace

struct PollLoop::State {
    LoopWork work;
    std::atomic<bool> isStopped = false;

    /// Until the next timer, but never past the moment at which to look whether another thread has cancelled.
    std::chrono::milliseconds longestWait() {
        constexpr std::chrono::milliseconds betweenLooks{100};
        const std::optional<LoopWork::Time> due = work.nextDue();
        if (!due)
            return betweenLooks;
        return std::clamp(std::chrono::ceil<std::chrono::milliseconds>(*due - now()),
                          std::chrono::milliseconds(0), betweenLooks);
    }
};

PollLoop::PollLoop() : state_(std::make_shared<State>()) {}
PollLoop::~PollLoop() = default;

void PollLoop::run(const CancelToken& cancel) {
    while (!state_->isStopped.exchange(false) && !cancel.isCancelled()) {
        state_->work.runReady(state_->longestWait());
        state_->work.runDue(now());
        state_->work.runPosted();
    }
}

void PollLoop::stop() {
    state_->isStopped = true;
    state_->work.wake();
}

void PollLoop::post(std::function<void()> f) {
    state_->work.post(std::move(f));
}

MainLoop::Token PollLoop::after(std::chrono::milliseconds delay, std::function<void()> f) {
    return state_->work.at(now() + delay, std::nullopt, std::move(f));
}

MainLoop::Token PollLoop::every(std::chrono::milliseconds period, std::function<void()> f) {
    return state_->work.at(now() + period, period, std::move(f));
}

MainLoop::Token PollLoop::watch(int descriptor, Readiness readiness, std::function<void()> f) {
    return state_->work.watch(descriptor, readiness, std::move(f));
}

} // namespace vh
