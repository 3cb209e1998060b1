#pragma once

#include <atomic>
#include <memory>
#include <stdexcept>

namespace vh {

/// Thrown out of long work whose CancelToken was set.
class Cancelled : public std::runtime_error {
public:
    Cancelled() : std::runtime_error("Cancelled.") {}
};

/// A flag shared by who asks and who works. Copies share the flag; any thread may set or poll it.
class CancelToken {
public:
    void cancel() const { flag_->store(true, std::memory_order_relaxed); }
    bool isCancelled() const { return flag_->load(std::memory_order_relaxed); }
    void throwIfCancelled() const {
        if (isCancelled())
            throw Cancelled();
    }

private:
    std::shared_ptr<std::atomic<bool>> flag_ = std::make_shared<std::atomic<bool>>(false);
};

} // namespace vh
