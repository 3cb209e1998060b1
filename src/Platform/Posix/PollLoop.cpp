#include "Platform/PollLoop.h"

#include "Platform/Posix/LoopWork.h"

#include <algorithm>
#include <atomic>

namespace vh {

namespace {

constexpr std::chrono::milliseconds forEver{-1};
/// Whether another thread has cancelled is looked at so often.
constexpr std::chrono::milliseconds betweenLooks{100};

LoopWork::Time now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace

struct PollLoop::State {
    LoopWork work;
    std::atomic<bool> isStopped = false;

    /// Until the next timer, but never longer than `longest`.
    void turn(std::optional<std::chrono::milliseconds> longest) {
        std::optional<std::chrono::milliseconds> wait = longest;
        if (const std::optional<LoopWork::Time> due = work.nextDue()) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - now());
            wait = std::max(std::chrono::milliseconds(0), std::min(left, wait.value_or(left)));
        }
        work.runReady(wait.value_or(forEver));
        work.runDue(now());
        work.runPosted();
    }
};

PollLoop::PollLoop() : state_(std::make_shared<State>()) {}
PollLoop::~PollLoop() = default;

void PollLoop::run() {
    while (!state_->isStopped.exchange(false))
        state_->turn(std::nullopt);
}

void PollLoop::run(const CancelToken& cancel) {
    while (!state_->isStopped.exchange(false) && !cancel.isCancelled())
        state_->turn(betweenLooks);
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
