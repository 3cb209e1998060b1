#include "Platform/Posix/LoopWork.h"

#include "Platform/Posix/Calls.h"

#include <algorithm>
#include <poll.h>
#include <unistd.h>

namespace vh {

namespace {

template <class Entries>
void dropOver(Entries& entries) {
    std::erase_if(entries, [](const auto& entry) { return entry->isOver; });
}

short eventsOf(MainLoop::Readiness readiness) {
    return readiness == MainLoop::Readiness::readable ? POLLIN : POLLPRI;
}

} // namespace

LoopWork::LoopWork() : waking_(openPipe()) {}

void LoopWork::post(std::function<void()> f) {
    {
        const std::lock_guard lock(mutex_);
        posted_.push_back(std::move(f));
    }
    wake();
}

void LoopWork::wake() {
    const std::lock_guard lock(mutex_);
    if (!isAwake_)
        isAwake_ = retried([&] { return ::write(waking_.writing.get(), "", 1); }) == 1;
}

/// The token only marks its entry, which may be the one that is being called, and outlives the loop unharmed.
template <class Entry>
MainLoop::Token LoopWork::tokenOf(const std::shared_ptr<Entry>& entry) {
    return {entry.get(), [entry](void*) {
                entry->isOver = true;
            }};
}

MainLoop::Token LoopWork::at(Time due, std::optional<Time> period, std::function<void()> f) {
    return tokenOf(timers_.emplace_back(std::make_shared<Timer>(Timer{due, period, std::move(f)})));
}

MainLoop::Token LoopWork::watch(int descriptor, MainLoop::Readiness readiness, std::function<void()> f) {
    return tokenOf(
        watches_.emplace_back(std::make_shared<Watch>(Watch{descriptor, readiness, std::move(f)})));
}

bool LoopWork::runPosted() {
    std::unique_lock lock(mutex_);
    if (isAwake_) {
        char byte = 0;
        retried([&] { return ::read(waking_.reading.get(), &byte, 1); });
        isAwake_ = false;
    }
    bool hasCalled = false;
    for (size_t left = posted_.size(); left > 0 && !posted_.empty(); --left) {
        const std::function<void()> f = std::move(posted_.front());
        posted_.pop_front();
        lock.unlock();
        f();
        hasCalled = true;
        lock.lock();
    }
    return hasCalled;
}

bool LoopWork::runDue(Time now) {
    dropOver(timers_);
    std::vector<std::shared_ptr<Timer>> due;
    std::ranges::copy_if(timers_, std::back_inserter(due),
                         [&](const auto& timer) { return timer->due <= now; });
    std::ranges::stable_sort(due, {}, [](const auto& timer) { return timer->due; });
    bool hasCalled = false;
    for (const auto& timer : due) {
        if (timer->isOver || timer->due > now) // by another call, or a turn of the loop inside one
            continue;
        if (timer->period)
            timer->due = (timer->due + *timer->period > now ? timer->due : now) + *timer->period;
        else
            timer->isOver = true;
        timer->f();
        hasCalled = true;
    }
    return hasCalled;
}

bool LoopWork::runReady(std::chrono::milliseconds wait) {
    dropOver(watches_);
    const std::vector<std::shared_ptr<Watch>> watches = watches_;
    std::vector<pollfd> descriptors{{waking_.reading.get(), POLLIN, 0}};
    for (const auto& entry : watches)
        descriptors.push_back({entry->descriptor, eventsOf(entry->readiness), 0});
    if (::poll(descriptors.data(), descriptors.size(), static_cast<int>(wait.count())) <= 0)
        return false;
    bool hasCalled = false;
    for (size_t i = 0; i < watches.size(); ++i) {
        const short events = descriptors[i + 1].revents;
        if ((events & POLLNVAL) != 0) // closed by its owner, and would end every wait at once
            watches[i]->isOver = true;
        if (events == 0 || watches[i]->isOver)
            continue;
        watches[i]->f();
        hasCalled = true;
    }
    return hasCalled;
}

std::optional<LoopWork::Time> LoopWork::nextDue() {
    dropOver(timers_);
    const auto next = std::ranges::min_element(timers_, {}, [](const auto& timer) { return timer->due; });
    return next == timers_.end() ? std::nullopt : std::optional((*next)->due);
}

} // namespace vh
