#include "HelperKit/ApplicationIdentity.h"

#include "Platform/SystemError.h"

#include <vector>

namespace vh::helper {

namespace {

constexpr std::string_view appImage = "AppImage";

/// An ELF program with the mark that the AppImage format puts into its header.
bool isAppImage(const GuardedFolder& folder, const std::string& name) {
    const std::string start = folder.startOfFile(name, 11);
    return start.starts_with("\x7f"
                             "ELF") &&
           start.substr(8, 2) == "AI" && start.size() == 11;
}

/// The first of the desktop files in one of the places where applications bring theirs.
std::optional<std::string> desktopFileIn(const GuardedFolder& application) {
    for (const char* place : {"", "share/applications", "usr/share/applications"}) {
        try {
            const GuardedFolder folder = application.below(place);
            std::vector<std::string> names = folder.names();
            std::erase_if(names, [](const std::string& name) { return !name.ends_with(".desktop"); });
            if (!names.empty())
                return names.front();
        } catch (const SystemError&) { // no such folder in it
        }
    }
    return std::nullopt;
}

std::optional<std::string> bundleIdentifier(const InstallDependencies& dependencies,
                                            const std::string& path) {
    const MaintenanceRunner::Execution answer = dependencies.ask(
        {"/usr/bin/plutil",
         {"-extract", "CFBundleIdentifier", "raw", "-o", "-", path + "/Contents/Info.plist"}});
    return answer.status == 0 && !answer.output.empty() ? std::optional(answer.output) : std::nullopt;
}

} // namespace

std::optional<std::string> applicationIdentity(const InstallDependencies& dependencies,
                                               const GuardedFolder& folder, const std::string& name) {
    const auto status = folder.statusOf(name);
    const bool isMac = dependencies.system == MaintenanceSystem::macos;
    if (status && status->type == FileType::folder)
        return isMac ? bundleIdentifier(dependencies, folder.path() + "/" + name)
                     : desktopFileIn(folder.below(name));
    if (status && status->type == FileType::file && !isMac && isAppImage(folder, name))
        return std::string(appImage);
    return std::nullopt;
}

} // namespace vh::helper
