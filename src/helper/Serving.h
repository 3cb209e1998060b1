#pragma once

#include <chrono>

namespace vh::helper {

/// Serves the system bus until nobody has asked for anything for `idleLimit`, the bus is gone, or a signal asks for
/// the end. What must not be left half done is finished first. Throws std::runtime_error when there is no bus.
void serve(std::chrono::milliseconds idleLimit);

} // namespace vh::helper
