#pragma once

#include <functional>
#include <string_view>

namespace vh::test {

/// False, and a test failure that names `what`, when it does not come true for long.
bool waitUntil(std::string_view what, const std::function<bool()>& holds);

/// Whether the process runs; one that only waits to be counted as dead does not.
bool isAlive(int pid);

} // namespace vh::test
