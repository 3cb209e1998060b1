#pragma once

#include "Core/Describe.h"
#include "Core/MaintenanceTask.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#undef linux // a tool that reads headers as older C++ knows it as a number

namespace vh {
namespace helper {

/// One program with fixed arguments. Nothing in it comes from outside.
struct MaintenanceCommand {
    std::string executable; ///< an absolute path
    std::vector<std::string> arguments;
    std::vector<int> alsoPasses = {}; ///< statuses beside 0 with which it did its work
    bool operator==(const MaintenanceCommand&) const = default;
};

enum class MaintenanceSystem { macos, linux };

/// What the Linux table must know of the machine.
struct MaintenanceFacts {
    std::function<bool(const std::string& path)> hasProgram;
    std::function<bool(const std::string& path)> exists;
    std::string rootFileSystem = {}; ///< "ext4", "btrfs", "xfs", …
    std::string rootDevice = {};     ///< such as "/dev/nvme0n1p2"; empty when it has none
    std::string desktop = {};        ///< of XDG_CURRENT_DESKTOP, lower case
    std::string distribution = {};   ///< and those it descends from: "ubuntu debian"
    std::string dataFolder = {};     ///< of this user: "/home/ana/.local/share"
    std::string cacheFolder = {};    ///< of this user: "/home/ana/.cache"
};
/// Those of this machine. Reads environment and mount table when called.
MaintenanceFacts factsOfThisMachine();
/// The system that this program was built for.
MaintenanceSystem thisSystem();

/// What a task does on a system, or why it does nothing there.
struct MaintenancePlan {
    enum class Blocker {
        none,
        programs,  ///< `missing` says which
        desktop,   ///< this one has no panel that restarts without ending the session
        fileSystem ///< that of the root cannot be checked while it is mounted
    };
    std::vector<MaintenanceCommand> commands; ///< in order; empty when the machine cannot do it
    Blocker blocker = Blocker::none;
    std::vector<std::string> missing; ///< programs of which one would do
    bool isPossible() const { return blocker == Blocker::none; }
};

/// Pure. On macOS `facts` are not asked. Programs are looked for in the system's folders only.
MaintenancePlan maintenancePlan(MaintenanceTask task, MaintenanceSystem system,
                                const MaintenanceFacts& facts);

bool requiresRoot(MaintenanceTask task, MaintenanceSystem system);
bool isSlow(MaintenanceTask task, MaintenanceSystem system);
/// How long it may take for whoever waits for it.
std::chrono::seconds timeLimit(MaintenanceTask task, MaintenanceSystem system);
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
