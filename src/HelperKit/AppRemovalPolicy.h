#pragma once

#include "HelperKit/InstallDependencies.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vh::helper {

/// Whether an application belongs to the system or is this one. `id` is its bundle's, or the name of its desktop file.
bool isProtectedApplication(MaintenanceSystem system, std::string_view name, std::string_view id);
/// Whether a name is one that an application may have in the folder of applications.
bool isApplicationName(MaintenanceSystem system, std::string_view name);

/// Which applications the helper removes. Pure.
struct AppRemovalPolicy {
    MaintenanceSystem system = thisSystem();
    std::string applications; ///< those directly in this folder

    /// The normalised path. Throws HelperServiceError: denied, notAnApp, protected.
    std::string check(const std::string& path) const;
    /// Asks the system's package tools whether something is theirs; of those that are there.
    static std::vector<MaintenanceCommand> ownerQueries(const std::string& path,
                                                        const std::vector<std::string>& children);
    /// The package that a query names; empty when none owns the item.
    static std::string ownerIn(const MaintenanceRunner::Execution& answer);
};

/// Removes an application for everybody. Throws HelperServiceError and SystemError. Blocks.
void removeApplication(const InstallDependencies& dependencies, const std::string& path);

} // namespace vh::helper
