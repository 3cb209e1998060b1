#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace vh::test {

/// What shall happen at one of the file calls that a piece of work makes.
enum class FaultKind {
    none,
    failure,     ///< the call does nothing and fails
    fullDisk,    ///< like failure, and so does every later call that takes room
    badMedium,   ///< like failure, and so does every later read
    shortWrite,  ///< half of the bytes are written, which is no failure
    killBefore,  ///< the process dies instead of making the call
    killHalfway, ///< the process dies after half of the bytes are written
    meddling,    ///< another program does something just before the call, which is then made
};

enum class CallGroup { open, create, read, write, flush, name, remove, attribute, close };

struct FileCall {
    const char* name;
    CallGroup group;
};

/// What the interposed calls of the thread that set `armed` do and note. One per thread.
struct Interception {
    bool armed = false;
    size_t target = 0; ///< which call, from 0
    FaultKind kind = FaultKind::none;
    int code = 0;
    bool fired = false;
    std::function<void()> meddle; ///< for FaultKind::meddling
    std::vector<FileCall> calls;
};
Interception& interception();

} // namespace vh::test
