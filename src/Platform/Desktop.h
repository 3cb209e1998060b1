#pragma once

#include "Platform/MainLoop.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vh {

/// What the person's desktop offers to programs. On Linux over D-Bus, with whichever service answers. One thread, the
/// main loop's; calls end within a few seconds also when a service does not answer.
class Desktop {
public:
    virtual ~Desktop() = default;

    /// Shows a notification. Throws std::runtime_error that says why it could not.
    virtual void notify(const std::string& title, const std::string& text) = 0;
    /// How long nobody has touched keyboard or pointer; nothing when no service tells.
    virtual std::optional<std::chrono::milliseconds> idleTime() = 0;
    /// Whether mains feeds the computer; nothing when that is not known. A computer without a battery is on mains.
    virtual std::optional<bool> isOnMains() = 0;
    /// Calls `changed` when isOnMains may answer otherwise than before.
    [[nodiscard]] virtual MainLoop::Token watchPower(MainLoop& loop, std::function<void()> changed) = 0;
};

/// Opens no connection before it is used.
std::unique_ptr<Desktop> openDesktop();

} // namespace vh
