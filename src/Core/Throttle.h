#pragma once

#include <chrono>

namespace vh {

/// How often long work says how far it is: the first time, and then once an interval. One thread at a time.
class Throttle {
public:
    explicit Throttle(std::chrono::milliseconds interval = std::chrono::milliseconds(100))
        : interval_(interval) {}

    /// Whether it is to be said now. What is `forced` always is, and the interval begins anew.
    bool isDue(bool forced = false) {
        const auto now = std::chrono::steady_clock::now();
        if (!forced && last_ != Time() && now - last_ < interval_)
            return false;
        last_ = now;
        return true;
    }

private:
    using Time = std::chrono::steady_clock::time_point;
    std::chrono::milliseconds interval_;
    Time last_{};
};

} // namespace vh
