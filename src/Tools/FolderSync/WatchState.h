#pragma once

#include <cstdint>
#include <string>

namespace vh::sync {

/// How a watched pair is.
struct WatchState {
    enum class Kind { notPermitted, held, failed, watching, waitingForSource, waitingForDestination };
    Kind kind = Kind::watching;
    std::string text;    ///< the path that is not permitted, or why it failed
    int64_t deletes = 0; ///< for which it is held

    static WatchState notPermitted(std::string path) { return {Kind::notPermitted, std::move(path), 0}; }
    static WatchState held(int64_t deletes) { return {Kind::held, {}, deletes}; }
    static WatchState failed(std::string why) { return {Kind::failed, std::move(why), 0}; }

    bool isHealthy() const { return kind == Kind::watching; }
    bool operator==(const WatchState&) const = default;
};

} // namespace vh::sync
