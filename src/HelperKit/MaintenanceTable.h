#pragma once

#include "Core/Describe.h"
#include "Core/MaintenanceTask.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vh {
namespace helper {

/// One program with fixed arguments. Nothing in it comes from outside.
struct MaintenanceCommand {
    std::string executable; ///< an absolute path
    std::vector<std::string> arguments;
    bool operator==(const MaintenanceCommand&) const = default;
};

enum class MaintenanceSystem { macos, linux };

/// What the Linux table must know of the machine.
struct MaintenanceFacts {
    std::function<bool(const std::string& path)> hasProgram;
    std::string rootFileSystem; ///< "ext4", "btrfs", "xfs", …
    std::string rootDevice;     ///< such as "/dev/nvme0n1p2"
    std::string desktop;        ///< of XDG_CURRENT_DESKTOP, lower case
};
/// Those of this machine. Reads environment and mount table when called.
MaintenanceFacts factsOfThisMachine();
/// The system that this program was built for.
MaintenanceSystem thisSystem();

/// What a task does on a system.
struct MaintenancePlan {
    std::vector<MaintenanceCommand> commands; ///< in order; empty when the machine cannot do it
    std::vector<std::string> missing;         ///< programs of which one would do
};

/// Pure. On macOS `facts` are not asked.
MaintenancePlan maintenancePlan(MaintenanceTask task, MaintenanceSystem system,
                                const MaintenanceFacts& facts);

bool requiresRoot(MaintenanceTask task, MaintenanceSystem system);
bool isSlow(MaintenanceTask task, MaintenanceSystem system);
/// Every task but restartMac, which only recipes name.
std::vector<MaintenanceTask> listedTasks();

} // namespace helper

template <>
inline constexpr auto describe<helper::MaintenanceCommand> =
    record(field("executable", &helper::MaintenanceCommand::executable),
           field("arguments", &helper::MaintenanceCommand::arguments));

template <>
inline constexpr auto describe<helper::MaintenanceSystem> = enumeration<helper::MaintenanceSystem>(
    {{helper::MaintenanceSystem::macos, "macos"}, {helper::MaintenanceSystem::linux, "linux"}});

} // namespace vh
