#include "Platform/Linux/DesktopBus.h"

#include "Platform/Linux/modules/BusCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <set>
#include <stdexcept>
#include <utility>

namespace vh {

namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds notifyLimit{3};
/// Three services may be asked in turn.
constexpr seconds askLimit{1};

constexpr BusMethod notification{"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                 "org.freedesktop.Notifications", "Notify"};
constexpr BusMethod capabilities{notification.service, notification.path, notification.interface,
                                 "GetCapabilities"};
constexpr BusMethod mutterIdle{"org.gnome.Mutter.IdleMonitor", "/org/gnome/Mutter/IdleMonitor/Core",
                               "org.gnome.Mutter.IdleMonitor", "GetIdletime"};
constexpr BusMethod saverIdle{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
                              "org.freedesktop.ScreenSaver", "GetSessionIdleTime"};
constexpr BusMethod nameHasOwner{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                 "NameHasOwner"};
constexpr const char* plasmaSaver = "org.kde.screensaver";
constexpr BusMethod loginIdle{"org.freedesktop.login1", "/org/freedesktop/login1/session/auto",
                              "org.freedesktop.login1.Session", "IdleHint"};
constexpr BusMethod loginIdleSince{loginIdle.service, loginIdle.path, loginIdle.interface,
                                   "IdleSinceHintMonotonic"};
constexpr BusMethod onBattery{"org.freedesktop.UPower", "/org/freedesktop/UPower", "org.freedesktop.UPower",
                              "OnBattery"};

milliseconds sinceStart() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return seconds(now.tv_sec) +
           std::chrono::duration_cast<milliseconds>(std::chrono::nanoseconds(now.tv_nsec));
}

/// A connection that is opened at first use, and anew after it broke.
class LazyBus {
public:
    explicit LazyBus(BusKind kind) : kind_(kind) {}

    sd_bus* get() {
        if (!bus_ || sd_bus_is_open(bus_.get()) <= 0)
            bus_ = connectBus(kind_, notifyLimit);
        return bus_.get();
    }

    BusAnswer ask(const BusMethod& method) {
        return call(get(), newCall(get(), method, BusStart::never), askLimit);
    }
    BusAnswer property(const BusMethod& property, BusStart start) {
        return call(get(), newPropertyCall(get(), property, start), askLimit);
    }

private:
    BusKind kind_;
    Bus bus_;
};

/// Tells of changes on a connection of its own: what another call on the same one reads ahead would be told too late.
class PowerWatch {
public:
    PowerWatch(MainLoop& loop, std::function<void()> changed, std::function<void()> lost)
        : bus_(connectBus(BusKind::system, askLimit)), changed_(std::move(changed)), lost_(std::move(lost)) {
        checkBus(sd_bus_match_signal(
                     bus_.get(), nullptr, onBattery.service, onBattery.path,
                     "org.freedesktop.DBus.Properties", "PropertiesChanged",
                     [](sd_bus_message*, void* self, sd_bus_error*) {
                         static_cast<PowerWatch*>(self)->hasChanged_ = true;
                         return 0;
                     },
                     this),
                 onBattery.service);
        descriptor_ =
            loop.watch(sd_bus_get_fd(bus_.get()), MainLoop::Readiness::readable, [this] { read(); });
    }

private:
    void read() {
        int result = 0;
        while ((result = sd_bus_process(bus_.get(), nullptr)) > 0) {
        }
        // Copied, since either may end this watch.
        const auto changed = std::exchange(hasChanged_, false) ? changed_ : nullptr;
        const auto lost = result < 0 ? lost_ : nullptr;
        if (result < 0)
            descriptor_.reset();
        if (lost)
            lost();
        if (changed)
            changed();
    }

    Bus bus_;
    std::function<void()> changed_, lost_;
    bool hasChanged_ = false;
    MainLoop::Token descriptor_;
};

bool listHolds(sd_bus_message* message, std::string_view wanted) {
    const char* text = nullptr;
    while (sd_bus_message_read_basic(message, 's', &text) > 0)
        if (text == wanted)
            return true;
    return false;
}

/// For servers that read markup in a notification's text.
std::string escaped(const std::string& text) {
    std::string out;
    for (const char c : text)
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else
            out += c;
    return out;
}

class SdDesktopBus : public DesktopBus {
public:
    void notify(const std::string& title, const std::string& text) override {
        sd_bus* const bus = session_.get();
        const std::string shown = readsMarkup(bus) ? escaped(text) : text;
        const BusMessage message = newCall(bus, notification, BusStart::allowed);
        checkBus(sd_bus_message_append(message.get(), "susssasa{sv}i", "Varnholt", uint32_t{0}, "varnholt",
                                       title.c_str(), shown.c_str(), 0, 1, "desktop-entry", "s", "varnholt",
                                       int32_t{-1}),
                 notification.member);
        if (const BusAnswer answer = call(bus, message, notifyLimit); !answer)
            throw std::runtime_error(answer.reason);
    }

    std::optional<milliseconds> idleTime() override {
        if (idleSource_)
            if (const auto time = tryIdle(*idleSource_))
                return time;
        for (size_t i = 0; i < sources.size(); ++i)
            if (const auto time = tryIdle(i)) {
                idleSource_ = i;
                return time;
            }
        return std::nullopt;
    }

    std::optional<bool> isOnBattery() override {
        try {
            const auto value = valueOf<int>(system_.property(onBattery, BusStart::allowed), 'b');
            return value ? std::optional(*value != 0) : std::nullopt;
        } catch (const std::runtime_error&) {
            return std::nullopt;
        }
    }

    MainLoop::Token watchPower(MainLoop& loop, std::function<void()> changed,
                               std::function<void()> lost) override {
        try {
            return std::make_shared<PowerWatch>(loop, std::move(changed), std::move(lost));
        } catch (const std::runtime_error&) {
            return nullptr;
        }
    }

private:
    using IdleSource = std::optional<milliseconds> (SdDesktopBus::*)();

    /// Throws std::runtime_error when there is no server.
    static bool readsMarkup(sd_bus* bus) {
        const BusAnswer answer = call(bus, newCall(bus, capabilities, BusStart::allowed), notifyLimit);
        if (!answer)
            throw std::runtime_error(answer.reason);
        return sd_bus_message_enter_container(answer.message.get(), 'a', "s") > 0 &&
               listHolds(answer.message.get(), "body-markup");
    }

    /// A source that let us wait once is not asked again.
    std::optional<milliseconds> tryIdle(size_t source) {
        if (silent_.contains(source))
            return std::nullopt;
        const auto begin = std::chrono::steady_clock::now();
        std::optional<milliseconds> time;
        try {
            time = (this->*sources[source])();
        } catch (const std::runtime_error&) {
        }
        if (!time && std::chrono::steady_clock::now() - begin >= askLimit)
            silent_.insert(source);
        return time;
    }

    std::optional<milliseconds> idleOfMutter() {
        const auto time = valueOf<uint64_t>(session_.ask(mutterIdle), 't');
        return time ? std::optional(milliseconds(*time)) : std::nullopt;
    }

    /// Plasma's answer counts milliseconds, everybody else's seconds.
    std::optional<milliseconds> idleOfScreenSaver() {
        const auto time = valueOf<uint32_t>(session_.ask(saverIdle), 'u');
        if (!time)
            return std::nullopt;
        const BusMessage question = newCall(session_.get(), nameHasOwner, BusStart::never);
        checkBus(sd_bus_message_append(question.get(), "s", plasmaSaver), plasmaSaver);
        const bool isPlasma = valueOf<int>(call(session_.get(), question, askLimit), 'b').value_or(0) != 0;
        return isPlasma ? milliseconds(*time) : seconds(*time);
    }

    std::optional<milliseconds> idleOfLogin() {
        const auto isIdle = valueOf<int>(system_.property(loginIdle, BusStart::never), 'b');
        if (!isIdle)
            return std::nullopt;
        if (*isIdle == 0)
            return milliseconds(0);
        const auto since = valueOf<uint64_t>(system_.property(loginIdleSince, BusStart::never), 't');
        if (!since)
            return std::nullopt;
        return std::max(sinceStart() - std::chrono::duration_cast<milliseconds>(microseconds(*since)),
                        milliseconds(0));
    }

    static constexpr std::array<IdleSource, 3> sources{
        &SdDesktopBus::idleOfMutter, &SdDesktopBus::idleOfScreenSaver, &SdDesktopBus::idleOfLogin};

    LazyBus session_{BusKind::session}, system_{BusKind::system};
    std::optional<size_t> idleSource_;
    std::set<size_t> silent_;
};

} // namespace

} // namespace vh

extern "C" void* vhModule() {
    static vh::DesktopModule module{[]() -> std::unique_ptr<vh::DesktopBus> {
        return std::make_unique<vh::SdDesktopBus>();
    }};
    return &module;
}
