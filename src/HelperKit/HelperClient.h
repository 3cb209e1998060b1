#pragma once

#include "Core/Describe.h"
#include "Core/MaintenanceTask.h"
#include "HelperKit/DeviceJob.h"
#include "HelperKit/HelperClientError.h"
#include "HelperKit/MaintenanceRunner.h"
#include "Platform/ServiceLink.h"
#include "Platform/ServiceRegistration.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
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

/// A person's side of the root helper: whether it is there, and one method for each of what it does. Everything blocks
/// for as long as the work takes, and throws HelperClientError. Any thread.
///
/// A call whose link is lost or whose time is over repairs what can be repaired without asking anybody and is made once
/// more. Each call bears that, whatever became of the first: a task or an installation that is done twice comes to the
/// same, what was removed is not found, and a job is refused whose image is there. A refusal is never repeated, nor is a
/// ping.
class HelperClient {
public:
    struct Dependencies {
        std::function<std::shared_ptr<ServiceLink>()> openLink;
        std::shared_ptr<ServiceRegistration> registration;
        UserDefaults& defaults;
        std::string build; ///< of this program
        /// For the system to let go of the old service.
        std::chrono::milliseconds repairPause{500};
        /// Turns the time-outs of the calls for tests.
        std::function<std::chrono::milliseconds(std::chrono::milliseconds)> limit = {};
    };
    explicit HelperClient(Dependencies dependencies);
    ~HelperClient();
    HelperClient(const HelperClient&) = delete;
    HelperClient& operator=(const HelperClient&) = delete;

    /// As last read; read when first asked for.
    HelperRegistrationStatus status() const;
    HelperRegistrationStatus refreshStatus();
    /// These ask the person for the right, and throw std::runtime_error that says what failed.
    void registerHelper();
    void unregisterHelper();
    /// Lets the system start the helper anew, and registers it anew, which may ask the person, when that does not help
    /// or another build is registered.
    void repair();
    /// Replaces a helper that an older build of this person's left, when that needs no asking; otherwise lastError says
    /// it waits. What somebody else registered is left to him.
    void refreshRegistrationAfterUpdate(const Texts& texts);
    /// The helper's answer, empty when there was none.
    std::string ping();
    /// The same, but throws HelperClientError when there was none.
    std::string pingOrThrow();
    std::string lastPing() const;
    std::string lastError() const;
    /// Whether registering, taking away and repairing ask the person.
    bool mustAsk() const;
    /// That this person registered, with whichever program.
    std::optional<std::string> registeredBuild() const;

    void removeAllowedItem(const std::string& path);
    int64_t sizeOfAllowedDirectory(const std::string& path);
    /// Of an answer that says no the output comes back, unless there is none; that is thrown as taskFailed or, by the
    /// installations, as installFailed. Throws LeftToHelper.
    MaintenanceRunner::Result runMaintenanceTask(MaintenanceTask task, const CancelToken& cancel = {});
    /// The job lives as long as this object waits for it: until its status says that it is over.
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

/// The helper of this machine. Reads nothing before the first use.
std::unique_ptr<HelperClient> openHelperClient(UserDefaults& defaults, const std::string& build);

} // namespace vh::helper
