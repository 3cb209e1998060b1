#include "support/PrivateBus.h"

#include "Platform/Files.h"
#include "Platform/Process.h"
#include "Platform/SystemError.h"

#include <cstdlib>
#include <fmt/format.h>
#include <future>

namespace vh::test {

namespace {

constexpr const char* sessionVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* systemVariable = "DBUS_SYSTEM_BUS_ADDRESS";

std::optional<std::string> variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

void restore(const char* name, const std::optional<std::string>& value) {
    if (value)
        ::setenv(name, value->c_str(), 1);
    else
        ::unsetenv(name);
}

/// Everything is allowed, and there is nothing that the daemon could start.
std::string configuration(const std::string& socket) {
    return fmt::format(R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>unix:path={}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)",
                       socket);
}

} // namespace

PrivateBus::PrivateBus(Kind kind)
    : variable_(kind == Kind::session ? sessionVariable : systemVariable), before_(variable(variable_)) {
    const std::string file = folder_ / "bus.conf";
    writeFileAtomically(file, configuration(folder_ / "bus"));
    auto said = std::make_shared<std::promise<std::string>>();
    auto address = said->get_future();
    daemon_ = std::thread([file, said, cancel = cancel_] {
        ProcessRequest request{{"dbus-daemon", "--config-file=" + file, "--nofork", "--print-address"}};
        request.onOutput = [&, line = std::string()](std::string_view piece) mutable {
            line += piece;
            if (line.ends_with('\n'))
                said->set_value(line.substr(0, line.size() - 1));
        };
        try {
            (void)runProcess(request, cancel);
        } catch (const SystemError&) {
            said->set_exception(std::current_exception());
        }
    });
    if (address.wait_for(std::chrono::seconds(20)) != std::future_status::ready) {
        stop();
        throw std::runtime_error("dbus-daemon does not come up");
    }
    address_ = address.get();
    ::setenv(variable_, address_.c_str(), 1);
}

PrivateBus::~PrivateBus() {
    stop();
    restore(variable_, before_);
}

void PrivateBus::stop() {
    cancel_.cancel();
    if (daemon_.joinable())
        daemon_.join();
}

NoBus::NoBus() : session_(variable(sessionVariable)), system_(variable(systemVariable)) {
    for (const char* name : {sessionVariable, systemVariable})
        ::setenv(name, "unix:path=/nonexistent/bus", 1);
}

NoBus::~NoBus() {
    restore(sessionVariable, session_);
    restore(systemVariable, system_);
}

} // namespace vh::test
