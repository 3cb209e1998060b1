#pragma once

#include "Platform/ServiceInstallation.h"

namespace vh::helper {

/// What the helper tells the system about itself, from resources/helper.
ServiceInstallation installation();

} // namespace vh::helper
