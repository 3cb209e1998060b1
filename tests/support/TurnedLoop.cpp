#include "support/TurnedLoop.h"

#include <gtest/gtest.h>

namespace vh::test {

Clock TurnedLoop::clock() const {
    return [this] {
        return date_.load();
    };
}

void TurnedLoop::passUntil(LoopWork::Time time) {
    date_ = date_.load() + std::chrono::duration_cast<Date::duration>(time - now_);
    now_ = time;
    work_.runDue(now_);
    while (work_.runPosted())
        ;
}

void TurnedLoop::advance(std::chrono::milliseconds time) {
    const LoopWork::Time end = now_ + time;
    while (work_.runPosted())
        ;
    for (auto due = work_.nextDue(); due && *due <= end; due = work_.nextDue())
        passUntil(std::max(*due, now_));
    passUntil(end);
}

bool TurnedLoop::turn(std::chrono::milliseconds wait) {
    const bool wasReady = work_.runReady(wait);
    return work_.runPosted() || wasReady;
}

void TurnedLoop::pump() {
    while (turn(std::chrono::milliseconds(0)))
        ;
}

bool TurnedLoop::waitUntil(std::string_view what, const std::function<bool()>& holds,
                           std::chrono::milliseconds limit) {
    constexpr std::chrono::milliseconds betweenLooks{5}; // some predicates look at what wakes no loop
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) {
            ADD_FAILURE() << "Waited in vain until " << what;
            return false;
        }
        turn(betweenLooks);
    }
    return true;
}

void TurnedLoop::post(std::function<void()> f) {
    work_.post(std::move(f));
}

MainLoop::Token TurnedLoop::after(std::chrono::milliseconds delay, std::function<void()> f) {
    return work_.at(now_ + delay, std::nullopt, std::move(f));
}

MainLoop::Token TurnedLoop::every(std::chrono::milliseconds period, std::function<void()> f) {
    return work_.at(now_ + period, period, std::move(f));
}

MainLoop::Token TurnedLoop::watch(int descriptor, Readiness readiness, std::function<void()> f) {
    return work_.watch(descriptor, readiness, std::move(f));
}

} // namespace vh::test
