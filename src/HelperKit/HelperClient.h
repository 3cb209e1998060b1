#pragma once

#include "Core/Describe.h"
#include "Core/MaintenanceTask.h"
#include "HelperKit/DeviceJob.h"
#include "HelperKit/MaintenanceRunner.h"
#include "Platform/ServiceLink.h"
#include "Platform/ServiceRegistration.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace vh {
class Texts;
class UserDefaults;

template <>
inline constexpr auto describe<HelperRegistrationStatus> =
    enumeration<HelperRegistrationStatus>({{HelperRegistrationStatus::enabled, "enabled"},
                                           {HelperRegistrationStatus::requiresApproval, "requiresApproval"},
                                           {HelperRegistrationStatus::notRegistered, "notRegistered"},
                                           {HelperRegistrationStatus::notFound, "notFound"},
                                           {HelperRegistrationStatus::unknown, "unknown"}});
} // namespace vh

namespace vh::helper {

/// Why a call of the helper came to nothing. what() is in English, for logs; text() for people.
class HelperClientError : public std::runtime_error {
public:
    enum class Kind { unavailable, connectionFailed, timeout, refused, restarted, badStatus };

    HelperClientError(Kind what, HelperRegistrationStatus status, const std::string& words);

    const Kind kind;
    const HelperRegistrationStatus status; ///< of unavailable
    /// The helper's own words when it refused.
    std::string text(const Texts& texts) const;
};

/// A person's side of the root helper: whether it is there, and one method for each of what it does. Everything blocks
/// for as long as the work takes, and throws HelperClientError. Any thread.
class HelperClient {
public:
    struct World {
        std::function<std::shared_ptr<ServiceLink>()> openLink;
        std::shared_ptr<ServiceRegistration> registration;
        UserDefaults& defaults;
        std::string build; ///< of this program
        std::chrono::milliseconds repairPause{500};
        /// Turns the time-outs of the calls for tests.
        std::function<std::chrono::milliseconds(std::chrono::milliseconds)> limit;
    };
    explicit HelperClient(World world);
    ~HelperClient();
    HelperClient(const HelperClient&) = delete;
    HelperClient& operator=(const HelperClient&) = delete;

    /// As last read; read when first asked for.
    HelperRegistrationStatus status() const;
    HelperRegistrationStatus refreshStatus();
    /// These ask the person for the right, and throw std::runtime_error that says what failed.
    void registerHelper();
    void unregisterHelper();
    void repair();
    /// Replaces a helper that an older build left, when that needs no asking; otherwise lastError says it waits.
    void refreshRegistrationAfterUpdate(const Texts& texts);
    /// The helper's answer, empty when there was none.
    std::string ping();
    std::string lastPing() const;
    std::string lastError() const;

    void removeAllowedItem(const std::string& path);
    int64_t sizeOfAllowedDirectory(const std::string& path);
    MaintenanceRunner::Result runMaintenanceTask(MaintenanceTask task);
    std::string startDeviceJob(const DeviceJobSpec& spec);
    DeviceJobStatus deviceJobStatus(const std::string& id);
    bool cancelDeviceJob(const std::string& id);
    void removeApplication(const std::string& path);
    MaintenanceRunner::Result installPackage(const std::string& path);
    MaintenanceRunner::Result installUnverifiedPackage(const std::string& path);
    MaintenanceRunner::Result installApplication(const std::string& path);

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The helper of this machine.
std::unique_ptr<HelperClient> openHelperClient(UserDefaults& defaults, const std::string& build);

} // namespace vh::helper
