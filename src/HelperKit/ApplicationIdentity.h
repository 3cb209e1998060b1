#pragma once

#include "HelperKit/InstallDependencies.h"

#include <optional>
#include <string>

namespace vh::helper {

/// By what an application is known as the same one in another version: its bundle's identifier, the name of the desktop
/// file that it brings along, or "AppImage" for one that is a single file. Nothing for what is no application.
std::optional<std::string> applicationIdentity(const InstallDependencies& dependencies,
                                               const GuardedFolder& folder, const std::string& name);

} // namespace vh::helper
