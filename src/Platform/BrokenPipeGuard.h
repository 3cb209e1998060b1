#pragma once

#include <csignal>

namespace vh {

/// While it stands, a write of this thread to a closed pipe is an EPIPE and no signal, whatever the program's
/// own handling of SIGPIPE is.
class BrokenPipeGuard {
public:
    BrokenPipeGuard();
    ~BrokenPipeGuard();
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

private:
    sigset_t before_;
    bool wasPending_;
};

} // namespace vh
