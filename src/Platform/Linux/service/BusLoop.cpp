#include "Platform/Linux/service/BusLoop.h"

#include <utility>

namespace vh {

namespace {

/// After so many events others on the loop have their turn.
constexpr int mostAtOnce = 64;

} // namespace

BusLoop::BusLoop(MainLoop& loop, Bus bus, std::function<void()> lost)
    : loop_(loop), bus_(std::move(bus)), lost_(std::move(lost)) {
    sd_event* event = nullptr;
    checkBus(sd_event_new(&event), "event loop");
    event_.reset(event);
    checkBus(sd_bus_attach_event(bus_.get(), event, SD_EVENT_PRIORITY_NORMAL), "event loop");
    readable_ = loop.watch(sd_event_get_fd(event), MainLoop::Readiness::readable, [this] { settle(); });
    settleSoon();
}

BusLoop::~BusLoop() {
    sd_bus_detach_event(bus_.get());
}

void BusLoop::settle() {
    if (isSettling_)
        return;
    isSettling_ = true;
    const bool isMore = dispatchSome();
    isSettling_ = false;
    if (sd_bus_is_open(bus_.get()) <= 0 && lost_) {
        readable_.reset();
        std::exchange(lost_, nullptr)();
    } else if (isMore)
        settleSoon();
}

void BusLoop::settleSoon() {
    loop_.post([weak = std::weak_ptr(self_)] {
        if (const auto self = weak.lock())
            (*self)->settle();
    });
}

/// Whether there is more to do at once. Otherwise the event loop is armed for whatever comes next.
bool BusLoop::dispatchSome() {
    for (int i = 0; i < mostAtOnce; ++i) {
        int ready = sd_event_prepare(event_.get());
        if (ready == 0)
            ready = sd_event_wait(event_.get(), 0);
        if (ready <= 0)
            return false;
        sd_event_dispatch(event_.get());
    }
    return true;
}

} // namespace vh
