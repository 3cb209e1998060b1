#pragma once

#include "HelperKit/MaintenanceRunner.h"
#include "HelperKit/MaintenanceTable.h"
#include "Platform/GuardedFolder.h"

#include <cstdint>
#include <functional>
#include <string>

namespace vh::helper {

/// What installing and removing software stands on.
struct InstallDependencies {
    using Run = std::function<MaintenanceRunner::Execution(const MaintenanceCommand&)>;

    MaintenanceSystem system;
    std::function<bool(const std::string& program)> hasProgram;
    /// Where what a user received in company mode lies.
    std::function<std::string(uint32_t user)> inboxOf;
    std::string packageStaging; ///< folders that root alone writes, made when missing
    std::string applicationStaging;
    std::string applications; ///< where they are installed for everybody
    Run ask;                  ///< a program that only answers
    Run install;              ///< one that changes the system

    static InstallDependencies ofThisMachine();
};

/// An item that a person hands over: in the open folder that holds it, where no link leads, and owned by them.
struct HandedItem {
    GuardedFolder folder;
    std::string name;
    FileStatus status;
};
/// Asks whether it exists and whether a link leads there, in this order. Throws HelperServiceError (notFound, symlink).
HandedItem handedItem(const std::string& path);

/// An empty folder in which nobody but the administrator can do anything.
GuardedFolder emptiedStaging(const std::string& path);

} // namespace vh::helper
