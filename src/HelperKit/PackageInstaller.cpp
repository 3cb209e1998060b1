#include "HelperKit/PackageInstaller.h"

#include "HelperKit/HelperServiceError.h"
#include "HelperKit/PackageInstallPolicy.h"

namespace vh::helper {

namespace {

/// Takes the copy away, whatever became of it.
class Staged {
public:
    Staged(const GuardedFolder& folder, std::string name) : folder_(folder), name_(std::move(name)) {}
    ~Staged() {
        try {
            folder_.remove(name_);
        } catch (const SystemError&) { // the next installation empties the folder
        }
    }
    Staged(const Staged&) = delete;
    Staged& operator=(const Staged&) = delete;
    std::string path() const { return folder_.path() + "/" + name_; }

private:
    const GuardedFolder& folder_;
    std::string name_;
};

GuardedFolder::OpenFile openHanded(const std::string& path, uint32_t user) {
    const HandedItem item = handedItem(path);
    if (item.status.type != FileType::file)
        throw HelperServiceError("notAPackage", "Not an installer package: " + path);
    try {
        GuardedFolder::OpenFile file = item.folder.openFile(item.name);
        if (file.status.owner == user)
            return file;
    } catch (const LinkRefused&) {
        throw HelperServiceError("symlink", "Refusing to follow a symlink: " + path);
    }
    throw HelperServiceError("notOwned", "The package does not belong to the person logged in: " + path);
}

} // namespace

std::string PackageInstaller::check(const std::string& path, uint32_t user, bool verified) const {
    return PackageInstallPolicy{dependencies_.system, dependencies_.hasProgram}.check(
        path, dependencies_.inboxOf(user), verified);
}

MaintenanceRunner::Result PackageInstaller::install(const std::string& path, uint32_t user, bool verified) {
    const std::lock_guard one(one_);
    const PackageInstallPolicy policy{dependencies_.system, dependencies_.hasProgram};
    const std::string normal = check(path, user, verified);
    const PackageKind kind = policy.kindOf(normal).value();
    const GuardedFolder::OpenFile file = openHanded(normal, user);
    const GuardedFolder staging = emptiedStaging(dependencies_.packageStaging);
    // Its own name says nothing to a program: it may look like an option or hold a space.
    const Staged copy(staging, "package" + normal.substr(normal.rfind('.')));
    staging.addFile("package" + normal.substr(normal.rfind('.')), file);
    if (verified)
        PackageInstallPolicy::requireAccepted(kind, dependencies_.ask(policy.assessment(kind, copy.path())));
    const MaintenanceRunner::Execution done = dependencies_.install(policy.installation(kind, copy.path()));
    if (done.timedOut)
        throw HelperServiceError("timedOut", "The installer did not finish in time.");
    return {done.status == 0, done.output};
}

} // namespace vh::helper
