#include "HelperKit/ImagePath.h"

#include <algorithm>
#include <vector>

namespace vh::helper {

bool isImagePath(std::string_view path, std::string_view home, MaintenanceSystem system) {
    static const std::vector<std::string> onMac{"/Users/", "/Volumes/", "/tmp/", "/private/tmp/",
                                                "/private/var/folders/"};
    static const std::vector<std::string> onLinux{"/home/", "/media/", "/run/media/",
                                                  "/mnt/",  "/tmp/",   "/var/tmp/"};
    const std::string ofHome = std::string(home) + '/';
    if (path.find("/../") != std::string_view::npos || path.ends_with("/..") || path.ends_with('/') ||
        path.find('\0') != std::string_view::npos)
        return false;
    return (!home.empty() && path.starts_with(ofHome)) ||
           std::ranges::any_of(system == MaintenanceSystem::macos ? onMac : onLinux,
                               [&](const std::string& each) { return path.starts_with(each); });
}

} // namespace vh::helper
