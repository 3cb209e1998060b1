#pragma once

#include <functional>

namespace vh::app::test {

/// Lets the main thread's events happen until the condition holds. False when it does not within half a minute.
[[nodiscard]] bool waitFor(const std::function<bool()>& condition);

/// Lets what is already posted happen.
void settle();

} // namespace vh::app::test
