#include "Platform/Desktop.h"

#include "Platform/Files.h"
#include "Platform/Linux/PowerSupplies.h"
#include "Platform/Module.h"
#include "Platform/PollLoop.h"
#include "support/BusService.h"
#include "support/PrivateBus.h"

#include <ctime>
#include <gmock/gmock.h>

namespace vh {
namespace {

using namespace std::chrono_literals;
using test::BusService;
using test::PrivateBus;
using Clock = std::chrono::steady_clock;

/// Both buses are the test's own.
class DesktopTest : public testing::Test {
protected:
    PrivateBus session_{PrivateBus::Kind::session};
    PrivateBus system_{PrivateBus::Kind::system};
    const std::unique_ptr<Desktop> desktop_ = openDesktop();
};

struct Notifications : BusService {
    explicit Notifications(const PrivateBus& bus)
        : BusService(bus.address(), "org.freedesktop.Notifications", "/org/freedesktop/Notifications") {
        setReply("org.freedesktop.Notifications.Notify", uint32_t{1});
    }
    void setCapabilities(std::vector<std::string> list) {
        setReply("org.freedesktop.Notifications.GetCapabilities", std::move(list));
    }
};

struct Power : BusService {
    explicit Power(const PrivateBus& bus)
        : BusService(bus.address(), "org.freedesktop.UPower", "/org/freedesktop/UPower") {}
    void setOnBattery(bool on) { setProperty("org.freedesktop.UPower.OnBattery", on); }
};

TEST_F(DesktopTest, ANotificationArrivesAsItWasWritten) {
    Notifications server(session_);
    const std::string title = "Año nuevo ✓", text = "Tom & <Ana>";
    for (const auto& [capabilities, shown] :
         {std::pair<std::vector<std::string>, std::string>{{"body"}, text},
          {{"body", "body-markup"}, "Tom &amp; &lt;Ana>"}}) {
        server.setCapabilities(capabilities);
        desktop_->notify(title, text);
        EXPECT_THAT(server.calls().back().texts, testing::IsSupersetOf({title, shown}));
    }
}

TEST_F(DesktopTest, WithoutAServerANotificationSaysWhy) {
    EXPECT_THROW(desktop_->notify("a", "b"), std::runtime_error);
    const test::NoBus none;
    try {
        openDesktop()->notify("a", "b");
        FAIL() << "it was shown nowhere";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("session bus"));
    }
}

TEST_F(DesktopTest, WhoeverKnowsTellsTheIdleTime) {
    EXPECT_EQ(desktop_->idleTime(), std::nullopt);
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    {
        BusService login(system_.address(), "org.freedesktop.login1", "/org/freedesktop/login1/session/auto");
        login.setProperty("org.freedesktop.login1.Session.IdleHint", false);
        EXPECT_EQ(desktop_->idleTime(), 0ms);
        login.setProperty("org.freedesktop.login1.Session.IdleHint", true);
        login.setProperty("org.freedesktop.login1.Session.IdleSinceHintMonotonic",
                          uint64_t(now.tv_sec - 10) * 1'000'000);
        EXPECT_GE(desktop_->idleTime(), 10s);
        EXPECT_LT(desktop_->idleTime(), 60s);
    }
    {
        BusService saver(session_.address(), "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver");
        saver.setReply("org.freedesktop.ScreenSaver.GetSessionIdleTime", uint32_t{90});
        EXPECT_EQ(desktop_->idleTime(), 90s);
        const BusService plasma(session_.address(), "org.kde.screensaver", "/ScreenSaver");
        EXPECT_EQ(desktop_->idleTime(), 90ms);
    }
    BusService mutter(session_.address(), "org.gnome.Mutter.IdleMonitor",
                      "/org/gnome/Mutter/IdleMonitor/Core");
    mutter.setReply("org.gnome.Mutter.IdleMonitor.GetIdletime", uint64_t{123456});
    EXPECT_EQ(desktop_->idleTime(), 123456ms);
}

TEST_F(DesktopTest, AServiceThatNeverAnswersIsWaitedForOnceAndShortly) {
    BusService mutter(session_.address(), "org.gnome.Mutter.IdleMonitor",
                      "/org/gnome/Mutter/IdleMonitor/Core");
    mutter.beSilent();
    BusService saver(session_.address(), "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver");
    saver.setReply("org.freedesktop.ScreenSaver.GetSessionIdleTime", uint32_t{7});
    const auto begin = Clock::now();
    EXPECT_EQ(desktop_->idleTime(), 7s);
    EXPECT_LT(Clock::now() - begin, 3s);
    EXPECT_EQ(desktop_->idleTime(), 7s);
    EXPECT_EQ(mutter.calls().size(), 1u);
}

TEST_F(DesktopTest, AChangeFromBatteryToMainsIsToldAtOnce) {
    Power power(system_);
    power.setOnBattery(true);
    PollLoop loop;
    ASSERT_EQ(desktop_->isOnMains(), false);
    size_t changes = 0;
    auto watch = desktop_->watchPower(loop, [&] {
        ++changes;
        loop.stop();
    });
    const auto limit = loop.after(20s, [&] { loop.stop(); });
    power.setOnBattery(false);
    loop.run();
    EXPECT_EQ(changes, 1u);
    EXPECT_EQ(desktop_->isOnMains(), true);

    // The bus goes away: no storm, and the watch can still be let go.
    system_.stop();
    const auto soon = loop.after(50ms, [&] { loop.stop(); });
    loop.run();
    EXPECT_EQ(changes, 1u);
    watch.reset();
}

TEST(PowerSupplies, AreReadAsTheKernelTellsThem) {
    struct Supply {
        std::string name, type, attribute, value;
    };
    const struct {
        std::vector<Supply> supplies;
        bool isOnMains;
    } cases[]{
        {{}, true},
        {{{"AC", "Mains", "online", "1"}, {"BAT0", "Battery", "status", "Discharging"}}, true},
        {{{"AC", "Mains", "online", "0"}, {"BAT0", "Battery", "status", "Discharging"}}, false},
        {{{"BAT0", "Battery", "status", "Discharging"}}, false},
        {{{"BAT0", "Battery", "status", "Charging"}}, true},
        {{{"ucsi", "USB", "online", "1"}, {"BAT0", "Battery", "status", "Charging"}}, true},
        {{{"hid-mouse", "Battery", "scope", "Device"}}, true},
    };
    for (const auto& each : cases) {
        const test::TempDir folder;
        for (const Supply& supply : each.supplies) {
            makeFolders(folder / supply.name);
            writeFileAtomically(folder / supply.name + "/type", supply.type + "\n");
            writeFileAtomically(folder / supply.name + "/" + supply.attribute, supply.value + "\n");
        }
        EXPECT_EQ(isOnMains(folder.path()), each.isOnMains)
            << (each.supplies.empty() ? "none" : each.supplies.front().name);
    }
    EXPECT_EQ(isOnMains("/nonexistent"), std::nullopt);
}

TEST(Module, OneThatIsNotThereIsNamed) {
    try {
        openModule("no-such-module");
        FAIL() << "it was opened";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("no-such-module"));
    }
}

} // namespace
} // namespace vh
