#pragma once

#include "Platform/CancelToken.h"

#include <cstddef>

namespace vh {

enum class StandardStream { input, output, error };

/// True when a person sits at the other end.
bool isTerminal(StandardStream stream);
/// Columns of the terminal on standard output or error; 80 when there is none to ask.
size_t terminalWidth();

/// A token that the first Ctrl-C, or a request to end, cancels; the second Ctrl-C ends the process as usual.
/// For the main thread, once in a process.
CancelToken cancelOnInterrupt();

} // namespace vh
