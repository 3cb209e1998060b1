#pragma once

namespace vh::cli {

/// What the program says to the shell.
enum class Exit { done = 0, failed = 1, usage = 2, warnings = 3, cancelled = 130 };

} // namespace vh::cli
