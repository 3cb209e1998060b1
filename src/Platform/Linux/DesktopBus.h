#pragma once

#include "Platform/MainLoop.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vh {

/// What the buses of a Linux desktop tell: the part of Desktop that lies in the module "desktop". Connects at first
/// use and anew after a bus went away. One thread.
class DesktopBus {
public:
    virtual ~DesktopBus() = default;
    /// Throws std::runtime_error.
    virtual void notify(const std::string& title, const std::string& text) = 0;
    virtual std::optional<std::chrono::milliseconds> idleTime() = 0;
    virtual std::optional<bool> isOnBattery() = 0;
    /// Nothing when the bus cannot be reached. `lost` comes at most once, and then `changed` no more.
    virtual MainLoop::Token watchPower(MainLoop& loop, std::function<void()> changed,
                                       std::function<void()> lost) = 0;
};

/// What the module's entry gives.
struct DesktopModule {
    std::unique_ptr<DesktopBus> (*open)();
};

} // namespace vh
