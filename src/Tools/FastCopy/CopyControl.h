#pragma once

#include "Platform/CancelToken.h"

#include <cstddef>
#include <mutex>
#include <optional>
#include <set>

namespace vh::copy {

/// How a person steers a copy while it runs: stop it, pause or take out a destination. Any thread.
class CopyControl {
public:
    void cancel() {
        change([&] { cancelled_ = true; });
    }
    /// From now on a stop of `token` stops the copy too.
    void follow(const CancelToken& token) {
        change([&] { followed_ = token; });
    }
    void setPaused(size_t destination, bool paused) {
        change([&] { paused ? void(paused_.insert(destination)) : void(paused_.erase(destination)); });
    }
    /// For good.
    void remove(size_t destination) {
        change([&] { removed_.insert(destination); });
    }

    bool isCancelled() const {
        return read([&] { return cancelled_ || (followed_ && followed_->isCancelled()); });
    }
    bool isPaused(size_t destination) const {
        return read([&] { return paused_.contains(destination); });
    }
    bool isRemoved(size_t destination) const {
        return read([&] { return removed_.contains(destination); });
    }
    /// Neither paused nor removed.
    bool takes(size_t destination) const {
        return read([&] { return !paused_.contains(destination) && !removed_.contains(destination); });
    }

private:
    template <class Work>
    void change(Work work) {
        const std::lock_guard guard(mutex_);
        work();
    }
    template <class Work>
    bool read(Work work) const {
        const std::lock_guard guard(mutex_);
        return work();
    }

    mutable std::mutex mutex_;
    bool cancelled_ = false;
    std::optional<CancelToken> followed_;
    std::set<size_t> paused_, removed_;
};

} // namespace vh::copy
