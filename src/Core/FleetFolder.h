#pragma once

#include "Core/Describe.h"

#include <string>

namespace vh {

struct Folders;

/// A folder that every computer has.
enum class FleetFolder { downloads, desktop, documents, shared };

/// Where it lies on this computer, for this user.
std::string pathOf(FleetFolder folder, const Folders& folders);

template <>
inline constexpr auto describe<FleetFolder> = enumeration<FleetFolder>({{FleetFolder::downloads, "downloads"},
                                                                        {FleetFolder::desktop, "desktop"},
                                                                        {FleetFolder::documents, "documents"},
                                                                        {FleetFolder::shared, "shared"}});

} // namespace vh
