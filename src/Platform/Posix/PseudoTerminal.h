#pragma once

#include "Platform/FileDescriptor.h"

#include <string>

namespace vh {

/// A terminal without a screen, which shows nothing of what is typed and leaves line ends alone. Its descriptors are
/// close-on-exec and never one of the three standard ones.
struct PseudoTerminal {
    FileDescriptor screen;   ///< ours, to read what a program writes
    FileDescriptor keyboard; ///< ours too, to type
    FileDescriptor program;  ///< theirs, held so that the settings stay until a program has it
    std::string path;        ///< of theirs
};
/// Throws SystemError.
PseudoTerminal openPseudoTerminal();

} // namespace vh
