#pragma once

#include "HelperKit/ApplicationInstallPolicy.h"
#include "HelperKit/DeviceJobRunner.h"
#include "HelperKit/HelperPathPolicy.h"
#include "HelperKit/MaintenanceRunner.h"
#include "HelperKit/MaintenanceTable.h"
#include "HelperKit/PackageInstaller.h"

#include <cstdint>
#include <functional>
#include <string>

namespace vh::helper {

/// What the helper does, for any peer: its policies and their order. All throws HelperServiceError for what a policy
/// refuses, and SystemError for what fails. Any thread; what is not called a check blocks.
class HelperService {
public:
    /// What it stands on.
    struct Dependencies {
        /// Of the user with this identifier. Looks at no file that is the user's.
        std::function<HelperPathPolicy(uint32_t user)> pathsOf;
        std::function<MaintenancePlan(MaintenanceTask)> planOf;
        std::function<bool(MaintenanceTask)> requiresRoot;
        InstallDependencies installs;
    };
    static Dependencies ofThisMachine();

    explicit HelperService(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}
    HelperService(const HelperService&) = delete;
    HelperService& operator=(const HelperService&) = delete;

    /// Name and version of this program.
    static std::string pong();

    /// Pure: what may be removed, whatever lies there.
    HelperPathPolicy::Place checkRemoval(const std::string& path, uint32_t user) const;
    HelperPathPolicy::Place checkSize(const std::string& path, uint32_t user) const;
    /// The path is followed from the root of the allowlist through no link at all.
    void removeAllowedItem(const std::string& path, uint32_t user) const;
    /// Bytes of a file, or of all files in a folder, on its own volume.
    int64_t sizeOfAllowedDirectory(const std::string& path, uint32_t user, const CancelToken& cancel) const;

    MaintenanceTask validateMaintenanceTask(const std::string& id) const;
    MaintenanceRunner::Result runMaintenanceTask(const std::string& id, const CancelToken& cancel) const;

    void checkApplicationRemoval(const std::string& path) const;
    void removeApplication(const std::string& path) const;
    PackageInstaller& packages() { return packages_; }
    const PackageInstaller& packages() const { return packages_; }
    ApplicationInstaller& applications() { return applications_; }
    const ApplicationInstaller& applications() const { return applications_; }

    /// Pure but for the user database.
    static DeviceJobSpec checkDeviceJob(const std::string& json, uint32_t user);
    DeviceJobRunner& jobs() { return jobs_; }
    const DeviceJobRunner& jobs() const { return jobs_; }

private:
    Dependencies dependencies_;
    PackageInstaller packages_{dependencies_.installs};
    ApplicationInstaller applications_{dependencies_.installs};
    DeviceJobRunner jobs_;
};

} // namespace vh::helper
