#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace vh::helper {

/// Where the ends of a call race: the first one wins and the rest are dropped. Any thread.
template <class T>
class OnceBox {
public:
    /// Whether this end was the first.
    bool end(T value) {
        {
            const std::lock_guard lock(mutex_);
            if (ended_)
                return false;
            ended_ = true;
            value_.emplace(std::move(value));
        }
        changed_.notify_one();
        return true;
    }

    /// The end, taken out; when none has come in time, that is the end, and there is no value. Waited for once.
    std::optional<T> wait(std::chrono::milliseconds limit) {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, limit, [this] { return ended_; });
        ended_ = true;
        return std::exchange(value_, std::nullopt);
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool ended_ = false;
    std::optional<T> value_;
};

} // namespace vh::helper
