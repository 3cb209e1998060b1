#include "Platform/BrokenPipeGuard.h"

#include <cerrno>
#include <pthread.h>

namespace vh {

namespace {

bool isPending() {
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
}

sigset_t onlyBrokenPipe() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

} // namespace

BrokenPipeGuard::BrokenPipeGuard() : wasPending_(isPending()) {
    const sigset_t set = onlyBrokenPipe();
    ::pthread_sigmask(SIG_BLOCK, &set, &before_);
}

BrokenPipeGuard::~BrokenPipeGuard() {
    const int failure = errno;
    const sigset_t set = onlyBrokenPipe();
    int taken = 0;
    if (!wasPending_ && isPending())
        sigwait(&set, &taken);
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    errno = failure;
}

} // namespace vh
