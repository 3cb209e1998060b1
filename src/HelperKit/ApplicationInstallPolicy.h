#pragma once

#include "HelperKit/InstallDependencies.h"

#include <cstdint>
#include <mutex>
#include <string>

namespace vh::helper {

/// Which applications the helper installs for everybody. Pure. Throws HelperServiceError.
struct ApplicationInstallPolicy {
    MaintenanceSystem system = thisSystem();
    std::string applications;

    /// The normalised path, which lies in the inbox (outsideInbox).
    static std::string check(const std::string& path, const std::string& inbox);
    /// notAnApp and protected, in this order. An empty `id` is no application's.
    void requireReplaceable(const std::string& path, const std::string& id) const;
    /// The application of that name which is there already must be the same one (otherApp).
    void requireSame(const std::string& name, const std::string& id, const std::string& installedID) const;
    /// The program that proves who made it; throws where the system knows no such proof (notAccepted).
    MaintenanceCommand assessment(const std::string& copy) const;
    static void requireAccepted(const MaintenanceRunner::Execution& assessed);
};

/// Installs an application that a person hands over: copies it to where nobody else can change it, has the copy
/// checked, and puts it in the place of an older one, which comes back when that fails. One at a time. Throws
/// HelperServiceError and SystemError. Any thread.
class ApplicationInstaller {
public:
    explicit ApplicationInstaller(const InstallDependencies& dependencies) : dependencies_(dependencies) {}

    /// Pure. The normalised path.
    std::string check(const std::string& path, uint32_t user) const;
    MaintenanceRunner::Result install(const std::string& path, uint32_t user);

private:
    void putInPlace(const GuardedFolder& staging, const std::string& name) const;

    const InstallDependencies& dependencies_;
    std::mutex one_;
};

} // namespace vh::helper
