#include "HelperKit/PackageInstallPolicy.h"

#include "HelperKit/HelperPathPolicy.h"
#include "HelperKit/HelperServiceError.h"
#include "Platform/PathParts.h"

#include <array>
#include <fmt/format.h>

namespace vh::helper {

namespace {

using Arguments = std::vector<std::string>;

/// One program that can do it, with what stands before and after the package.
struct Way {
    const char* program;
    Arguments before;
    Arguments after = {};
};

/// In the order in which they are taken: those that fetch what a package needs come first.
std::vector<Way> waysToInstall(PackageKind kind) {
    switch (kind) {
    case PackageKind::pkg:
        return {{"/usr/sbin/installer", {"-pkg"}, {"-target", "/"}}};
    case PackageKind::deb:
        return {{"/usr/bin/apt-get",
                 {"--yes", "--option=Dpkg::Options::=--force-confold", "--option=DPkg::Lock::Timeout=120",
                  "install"}},
                {"/usr/bin/dpkg", {"--install"}}};
    case PackageKind::rpm:
        return {{"/usr/bin/dnf", {"--assumeyes", "install"}},
                {"/usr/bin/zypper", {"--non-interactive", "install", "--allow-unsigned-rpm"}},
                {"/usr/bin/rpm", {"--upgrade", "--replacepkgs"}}};
    }
    return {};
}

Way wayToAssess(PackageKind kind) {
    switch (kind) {
    case PackageKind::pkg:
        return {"/usr/sbin/spctl", {"--assess", "--type", "install"}};
    case PackageKind::deb:
        return {"/usr/bin/debsig-verify", {}};
    case PackageKind::rpm:
        break;
    }
    return {"/usr/bin/rpmkeys", {"--checksig"}};
}

MaintenanceCommand commandOf(const Way& way, const std::string& copy) {
    MaintenanceCommand command{way.program, way.before};
    command.arguments.push_back(copy);
    command.arguments.insert(command.arguments.end(), way.after.begin(), way.after.end());
    return command;
}

/// rpmkeys calls a package without any signature well too, as long as its digests are; older ones name the program that
/// checked the signature.
bool saysSigned(std::string_view output) {
    const std::string_view verdict = output.substr(output.rfind(": ") + 1);
    return verdict.ends_with(" OK") && verdict.find("NOT OK") == std::string_view::npos &&
           (verdict.find(" signatures ") != std::string_view::npos ||
            verdict.find(" pgp ") != std::string_view::npos ||
            verdict.find(" gpg ") != std::string_view::npos);
}

} // namespace

std::string PackageInstallPolicy::check(const std::string& path, const std::string& inbox,
                                        bool verified) const {
    std::string normal = normalisedPath(path);
    if (!verified && !isBelow(normal, inbox))
        throw HelperServiceError("outsideInbox",
                                 "Only packages received in company mode can be installed: " + normal);
    if (!kindOf(normal))
        throw HelperServiceError("notAPackage", "Not an installer package: " + normal);
    return normal;
}

std::optional<PackageKind> PackageInstallPolicy::kindOf(std::string_view path) const {
    if (system == MaintenanceSystem::macos)
        return path.ends_with(".pkg") ? std::optional(PackageKind::pkg) : std::nullopt;
    if (path.ends_with(".deb"))
        return PackageKind::deb;
    return path.ends_with(".rpm") ? std::optional(PackageKind::rpm) : std::nullopt;
}

MaintenanceCommand PackageInstallPolicy::assessment(PackageKind kind, const std::string& copy) const {
    const Way way = wayToAssess(kind);
    if (!hasProgram(way.program))
        throw HelperServiceError(
            "missingProgram",
            fmt::format("The signature of this package cannot be checked: {} is not there.", way.program));
    return commandOf(way, copy);
}

void PackageInstallPolicy::requireAccepted(PackageKind kind, const MaintenanceRunner::Execution& assessed) {
    const bool isWell = assessed.status == 0 && !assessed.timedOut;
    if (isWell && (kind != PackageKind::rpm || saysSigned(assessed.output)))
        return;
    throw HelperServiceError(
        "notAccepted",
        (kind == PackageKind::pkg
             ? "macOS would not open this package (it must be signed with a Developer ID and notarized). "
             : "The system would not accept this package (it must be signed with a key that it trusts). ") +
            assessed.output);
}

MaintenanceCommand PackageInstallPolicy::installation(PackageKind kind, const std::string& copy) const {
    std::string missing;
    for (const Way& way : waysToInstall(kind)) {
        if (hasProgram(way.program))
            return commandOf(way, copy);
        missing += (missing.empty() ? "" : ", ") + std::string(way.program);
    }
    throw HelperServiceError(
        "missingProgram",
        fmt::format("This package cannot be installed: one of these programs is needed: {}.", missing));
}

} // namespace vh::helper
