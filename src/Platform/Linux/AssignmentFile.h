#pragma once

#include <string>
#include <string_view>

namespace vh {

/// The value of `key` in a file of shell-like assignments such as /etc/os-release, its quotes and escapes undone.
/// The last assignment wins, as it does in a shell; empty when there is none.
std::string assignedValue(std::string_view text, std::string_view key);

} // namespace vh
