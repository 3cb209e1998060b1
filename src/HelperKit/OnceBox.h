#pragma once

#include "Platform/CancelToken.h"

#include <algorithm>
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

    /// The end, taken out; when none has come in time or before the cancel, that is the end, and there is no value.
    /// Waited for once.
    std::optional<T> wait(std::chrono::milliseconds limit, const CancelToken& cancel = {}) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        std::unique_lock lock(mutex_);
        for (auto now = deadline - limit; !ended_ && now < deadline && !cancel.isCancelled();
             now = std::chrono::steady_clock::now())
            changed_.wait_until(lock, std::min(deadline, now + pollsCancel));
        ended_ = true;
        return std::exchange(value_, std::nullopt);
    }

private:
    /// How soon a cancel is noticed.
    static constexpr std::chrono::milliseconds pollsCancel{50};

    std::mutex mutex_;
    std::condition_variable changed_;
    bool ended_ = false;
    std::optional<T> value_;
};

} // namespace vh::helper
