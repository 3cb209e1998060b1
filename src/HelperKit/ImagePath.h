#pragma once

#include "HelperKit/MaintenanceTable.h"

#include <string>
#include <string_view>

namespace vh::helper {

/// Whether an image of a disk may be written there: below the person's home, a mounted volume or a temporary folder,
/// and nowhere else, whatever rights the person has. Pure.
bool isImagePath(std::string_view path, std::string_view home, MaintenanceSystem system);

} // namespace vh::helper
