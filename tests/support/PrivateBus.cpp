#include "support/PrivateBus.h"

#include "Platform/Files.h"

#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>

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

/// Everything is allowed, to every user, and there is nothing that the daemon could start.
std::string configurationFile(const TempDir& folder) {
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    const std::string file = folder / "bus.conf";
    writeFileAtomically(
        file, fmt::format(R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>unix:path={}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
    <allow user="*"/>
  </policy>
</busconfig>
)",
                          folder / "bus"));
    return file;
}

} // namespace

PrivateBus::PrivateBus(Kind kind)
    : variable_(kind == Kind::session ? sessionVariable : systemVariable), before_(variable(variable_)),
      daemon_({"dbus-daemon", "--config-file=" + configurationFile(folder_), "--nofork", "--print-address"}) {
    ::setenv(variable_, address().c_str(), 1);
}

PrivateBus::~PrivateBus() {
    restore(variable_, before_);
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
