#pragma once

#include "HelperKit/InstallDependencies.h"

#include <cstdint>
#include <mutex>
#include <string>

namespace vh::helper {

/// Installs a package that a person hands over: copies it to where nobody else can change it, has the copy checked and
/// installs that. One at a time. Throws HelperServiceError and SystemError. Any thread.
class PackageInstaller {
public:
    explicit PackageInstaller(const InstallDependencies& dependencies) : dependencies_(dependencies) {}

    /// Pure. The normalised path.
    std::string check(const std::string& path, uint32_t user, bool verified) const;
    MaintenanceRunner::Result install(const std::string& path, uint32_t user, bool verified);

private:
    const InstallDependencies& dependencies_;
    std::mutex one_;
};

} // namespace vh::helper
