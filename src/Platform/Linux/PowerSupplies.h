#pragma once

#include <optional>
#include <string>

namespace vh {

/// Whether mains feeds the computer as the kernel's folder of power supplies tells; nothing when it cannot be read.
std::optional<bool> isOnMains(const std::string& folder);

} // namespace vh
