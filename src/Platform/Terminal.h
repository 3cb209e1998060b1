#pragma once

#include "Platform/CancelToken.h"

#include <cstddef>
#include <optional>
#include <string>

namespace vh {

enum class StandardStream { input, output, error };

/// True when a person sits at the other end.
bool isTerminal(StandardStream stream);
/// Columns of the terminal on standard output or error; 80 when there is none to ask.
size_t terminalWidth();

/// Reads a line from standard input, which the terminal, if it is one, does not show while it is typed. Nothing at the
/// end of the input.
std::optional<std::string> readHiddenLine();

/// A token that the first Ctrl-C, or a request to end, cancels; the second Ctrl-C ends the process as usual.
/// For the main thread, once in a process.
CancelToken cancelOnInterrupt();
/// Readable once that token was cancelled by a signal; for a loop that sleeps until then.
int interruptDescriptor();

} // namespace vh
