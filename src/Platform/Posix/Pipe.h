#pragma once

#include "Platform/FileDescriptor.h"

namespace vh {

/// A pipe whose ends are close-on-exec from the start and never one of the three standard descriptors.
struct Pipe {
    FileDescriptor reading;
    FileDescriptor writing;
};
/// Throws SystemError.
Pipe openPipe();

} // namespace vh
