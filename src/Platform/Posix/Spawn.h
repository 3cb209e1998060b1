#pragma once

#include "Platform/FileDescriptor.h"

#include <sys/types.h>

namespace vh {

struct ProcessRequest;

/// A started program, leader of its own process group, and our ends of its streams, none of which blocks.
struct SpawnedProcess {
    pid_t id = 0;
    FileDescriptor input;
    FileDescriptor output;
    FileDescriptor errors; ///< empty when they arrive in `output`
};

/// Throws SystemError when the program cannot be started.
SpawnedProcess spawn(const ProcessRequest& request);

} // namespace vh
