#pragma once

#include <cstddef>
#include <span>

namespace vh {

/// Fills the span from the system's random source. Throws SystemError.
void fillRandom(std::span<std::byte> bytes);

} // namespace vh
