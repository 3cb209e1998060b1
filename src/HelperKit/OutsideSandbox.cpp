#include "HelperKit/OutsideSandbox.h"

#include "Platform/Files.h"

#include <fmt/format.h>

namespace vh::helper {

namespace {

constexpr const char* runner = "/usr/bin/systemd-run";

} // namespace

MaintenanceCommand outsideSandbox(const MaintenanceCommand& command, std::chrono::seconds limit) {
    MaintenanceCommand wrapped{runner,
                               {"--pipe", "--wait", "--collect", "--quiet",
                                fmt::format("--property=RuntimeMaxSec={}", limit.count()),
                                "--setenv=DEBIAN_FRONTEND=noninteractive", "--setenv=LC_ALL=C.UTF-8", "--",
                                command.executable},
                               command.alsoPasses};
    wrapped.arguments.insert(wrapped.arguments.end(), command.arguments.begin(), command.arguments.end());
    return wrapped;
}

bool hasServiceManager() {
    return statusOf("/run/systemd/system") && statusOf(runner);
}

} // namespace vh::helper
