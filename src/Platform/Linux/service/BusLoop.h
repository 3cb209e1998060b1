#pragma once

#include "Platform/Linux/modules/BusCalls.h"
#include "Platform/MainLoop.h"

#include <functional>
#include <memory>
#include <systemd/sd-event.h>

namespace vh {

/// A bus whose messages come and go on a main loop: what arrives, what waits for room to be written, and the time-outs
/// of calls. An event loop of systemd's stands between, since its own descriptor is readable for all three. Loop's
/// thread.
class BusLoop {
public:
    /// `lost` is called once when the bus is gone; it may let go of this. Throws std::runtime_error.
    BusLoop(MainLoop& loop, Bus bus, std::function<void()> lost);
    ~BusLoop();
    BusLoop(const BusLoop&) = delete;
    BusLoop& operator=(const BusLoop&) = delete;

    sd_bus* bus() const { return bus_.get(); }
    /// Sends what was handed to the bus outside the bus's own callbacks; in them it does nothing. The last thing that its
    /// caller does, since it may find the bus lost.
    void settle();

private:
    struct EventCloser {
        void operator()(sd_event* event) const { sd_event_unref(event); }
    };

    bool dispatchSome();
    void settleSoon();

    MainLoop& loop_;
    std::unique_ptr<sd_event, EventCloser> event_;
    Bus bus_;
    std::function<void()> lost_;
    bool isSettling_ = false;
    MainLoop::Token readable_;
    const std::shared_ptr<BusLoop*> self_ = std::make_shared<BusLoop*>(this); ///< for what was posted
};

} // namespace vh
