#include "Platform/Desktop.h"

#include "Platform/Linux/DesktopBus.h"
#include "Platform/Linux/PowerSupplies.h"
#include "Platform/Module.h"

#include <stdexcept>

namespace vh {

namespace {

constexpr const char* supplyFolder = "/sys/class/power_supply";
constexpr std::chrono::seconds supplyPeriod{30};

class LinuxDesktop : public Desktop {
public:
    void notify(const std::string& title, const std::string& text) override { openBus().notify(title, text); }

    std::optional<std::chrono::milliseconds> idleTime() override {
        DesktopBus* const bus = busIfAny();
        return bus != nullptr ? bus->idleTime() : std::nullopt;
    }

    std::optional<bool> isOnMains() override {
        if (DesktopBus* const bus = busIfAny())
            if (const auto battery = bus->isOnBattery())
                return !*battery;
        return vh::isOnMains(supplyFolder);
    }

    MainLoop::Token watchPower(MainLoop& loop, std::function<void()> changed) override {
        /// One of the two stands at a time: the bus tells of changes, or the kernel's files are read again and again.
        struct Watch {
            MainLoop::Token bus, timer;
            std::optional<bool> last;
        };
        auto watch = std::make_shared<Watch>();
        const auto poll = [&loop, changed, weak = std::weak_ptr(watch)] {
            const auto self = weak.lock();
            if (!self)
                return;
            self->last = vh::isOnMains(supplyFolder);
            self->timer = loop.every(supplyPeriod, [weak, changed] {
                const auto each = weak.lock();
                const auto now = vh::isOnMains(supplyFolder);
                if (each && std::exchange(each->last, now) != now)
                    changed();
            });
        };
        DesktopBus* const bus = busIfAny();
        if (bus != nullptr && bus->isOnBattery())
            watch->bus = bus->watchPower(loop, changed, poll);
        if (!watch->bus)
            poll();
        return watch;
    }

private:
    DesktopBus& openBus() {
        if (!bus_)
            bus_ = static_cast<DesktopModule*>(openModule("desktop"))->open();
        return *bus_;
    }

    DesktopBus* busIfAny() {
        try {
            return &openBus();
        } catch (const std::runtime_error&) {
            return nullptr;
        }
    }

    std::unique_ptr<DesktopBus> bus_;
};

} // namespace

std::unique_ptr<Desktop> openDesktop() {
    return std::make_unique<LinuxDesktop>();
}

} // namespace vh
