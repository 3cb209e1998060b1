#pragma once

#include "Platform/MainLoop.h"

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace vh {

/// The way from other threads to an object on a loop, which they may outlive. The object closes it when it goes.
class LoopGate {
public:
    explicit LoopGate(MainLoop& loop) : loop_(&loop) {}

    /// Calls `f` on the loop's thread, unless the gate is closed by then. Any thread.
    static void post(const std::shared_ptr<LoopGate>& gate, std::function<void()> f) {
        const std::lock_guard lock(gate->mutex_);
        if (gate->loop_ != nullptr)
            gate->loop_->post([gate, f = std::move(f)] {
                if (gate->loop_ != nullptr)
                    f();
            });
    }
    /// On the loop's thread.
    void close() {
        const std::lock_guard lock(mutex_);
        loop_ = nullptr;
    }

private:
    std::mutex mutex_;
    MainLoop* loop_; ///< changed on the loop's thread alone
};

} // namespace vh
