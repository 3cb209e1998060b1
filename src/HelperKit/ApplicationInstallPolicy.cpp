#include "HelperKit/ApplicationInstallPolicy.h"

#include "HelperKit/AppRemovalPolicy.h"
#include "HelperKit/ApplicationIdentity.h"
#include "HelperKit/HelperPathPolicy.h"
#include "HelperKit/HelperServiceError.h"
#include "Platform/PathParts.h"

#include <optional>

namespace vh::helper {

namespace {

constexpr const char* previousPrefix = "previous-";

/// Empties the folder at the end, whatever became of what was in it.
class Cleared {
public:
    explicit Cleared(const GuardedFolder& folder) : folder_(folder) {}
    ~Cleared() {
        try {
            for (const std::string& name : folder_.names())
                folder_.remove(name);
        } catch (const SystemError&) { // the next installation empties it
        }
    }
    Cleared(const Cleared&) = delete;
    Cleared& operator=(const Cleared&) = delete;

private:
    const GuardedFolder& folder_;
};

} // namespace

std::string ApplicationInstallPolicy::check(const std::string& path, const std::string& inbox) {
    std::string normal = normalisedPath(path);
    if (!isBelow(normal, inbox))
        throw HelperServiceError("outsideInbox",
                                 "Only apps received in company mode can be installed: " + normal);
    return normal;
}

void ApplicationInstallPolicy::requireReplaceable(const std::string& path, const std::string& id) const {
    const std::string name = path.substr(path.rfind('/') + 1);
    if (id.empty() || !isApplicationName(system, name) || name.starts_with(previousPrefix))
        throw HelperServiceError("notAnApp", "Not an application: " + path);
    if (isProtectedApplication(system, name, id))
        throw HelperServiceError("protected",
                                 applications + "/" + name + " is protected and cannot be replaced.");
}

void ApplicationInstallPolicy::requireSame(const std::string& name, const std::string& id,
                                           const std::string& installedID) const {
    if (id != installedID)
        throw HelperServiceError("otherApp", applications + " already has a different app called " + name);
}

MaintenanceCommand ApplicationInstallPolicy::assessment(const std::string& copy) const {
    if (system == MaintenanceSystem::macos)
        return {"/usr/sbin/spctl", {"--assess", "--type", "execute", copy}};
    throw HelperServiceError("notAccepted",
                             "This system cannot tell who made an app that is no package, so it is "
                             "not installed. Send it as a signed package instead.");
}

void ApplicationInstallPolicy::requireAccepted(const MaintenanceRunner::Execution& assessed) {
    if (assessed.status != 0 || assessed.timedOut)
        throw HelperServiceError(
            "notAccepted",
            "macOS would not open this app (it must be signed with a Developer ID and notarized). " +
                assessed.output);
}

std::string ApplicationInstaller::check(const std::string& path, uint32_t user) const {
    return ApplicationInstallPolicy::check(path, dependencies_.inboxOf(user));
}

MaintenanceRunner::Result ApplicationInstaller::install(const std::string& path, uint32_t user) {
    const std::lock_guard one(one_);
    const ApplicationInstallPolicy policy{dependencies_.system, dependencies_.applications};
    const std::string normal = check(path, user);
    const HandedItem item = handedItem(normal);
    if (item.status.owner != user)
        throw HelperServiceError("notOwned", "The app does not belong to the person logged in: " + normal);
    if (item.status.type != FileType::folder && item.status.type != FileType::file)
        throw HelperServiceError("notAnApp", "Not an application: " + normal);

    const GuardedFolder staging = emptiedStaging(dependencies_.applicationStaging);
    const Cleared cleared(staging);
    staging.addCopy(item.name, item.folder, item.name);
    const std::string id = applicationIdentity(dependencies_, staging, item.name).value_or("");
    policy.requireReplaceable(normal, id);
    const GuardedFolder applications = GuardedFolder::open(dependencies_.applications);
    if (applications.statusOf(item.name))
        policy.requireSame(item.name, id,
                           applicationIdentity(dependencies_, applications, item.name).value_or(""));
    ApplicationInstallPolicy::requireAccepted(
        dependencies_.ask(policy.assessment(staging.path() + "/" + item.name)));
    putInPlace(staging, item.name);
    return {true, dependencies_.applications + "/" + item.name};
}

/// Nobody but the administrator can meddle with either folder.
void ApplicationInstaller::putInPlace(const GuardedFolder& staging, const std::string& name) const {
    const std::string place = dependencies_.applications + "/" + name;
    const std::string previous = dependencies_.applications + "/" + previousPrefix + name;
    const GuardedFolder applications = GuardedFolder::open(dependencies_.applications);
    const auto old = applications.statusOf(name);
    if (old) {
        if (applications.statusOf(previousPrefix + name))
            applications.remove(previousPrefix + name);
        moveFile(place, previous);
    }
    try {
        moveFile(staging.path() + "/" + name, place);
    } catch (const SystemError& error) {
        if (old)
            moveFile(previous, place);
        throw HelperServiceError("failed", error.what());
    }
    if (old)
        applications.remove(previousPrefix + name);
}

} // namespace vh::helper
