#pragma once

#include <functional>
#include <map>
#include <optional>
#include <queue>
#include <string>
#include <utility>

namespace vh::flows {

/// Serial sections named by text: one holder at a time, first come, first served. One thread; nothing blocks.
class Lanes {
public:
    /// Calls `go` when the lane is free, at once or from leave; without a lane at once.
    void enter(const std::optional<std::string>& lane, std::function<void()> go) {
        if (!lane)
            return go();
        const auto [place, isFree] = busy_.try_emplace(*lane);
        if (isFree)
            go();
        else
            place->second.push(std::move(go));
    }

    /// Hands the lane to the next one.
    void leave(const std::optional<std::string>& lane) {
        if (!lane)
            return;
        const auto place = busy_.find(*lane);
        if (place->second.empty()) {
            busy_.erase(place);
            return;
        }
        const std::function<void()> next = std::move(place->second.front());
        place->second.pop();
        next();
    }

private:
    std::map<std::string, std::queue<std::function<void()>>> busy_; ///< who waits for each
};

} // namespace vh::flows
