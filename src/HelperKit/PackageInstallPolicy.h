#pragma once

#include "HelperKit/MaintenanceRunner.h"
#include "HelperKit/MaintenanceTable.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vh::helper {

enum class PackageKind { pkg, deb, rpm };

/// Which packages the helper installs and with which programs. Pure. Throws HelperServiceError.
struct PackageInstallPolicy {
    MaintenanceSystem system = thisSystem();
    std::function<bool(const std::string& program)> hasProgram; ///< by its absolute path

    /// The normalised path. What nobody will check comes from the inbox alone, which is asked first.
    std::string check(const std::string& path, const std::string& inbox, bool verified) const;
    std::optional<PackageKind> kindOf(std::string_view path) const;

    /// The program that proves who made the package; throws when the system has none.
    MaintenanceCommand assessment(PackageKind kind, const std::string& copy) const;
    /// Throws unless what that program said is the proof.
    static void requireAccepted(PackageKind kind, const MaintenanceRunner::Execution& assessed);
    MaintenanceCommand installation(PackageKind kind, const std::string& copy) const;
};

} // namespace vh::helper
