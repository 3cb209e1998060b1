#include "Platform/Terminal.h"

#include <csignal>
#include <sys/ioctl.h>
#include <unistd.h>

namespace vh {

namespace {

int descriptorOf(StandardStream stream) {
    switch (stream) {
    case StandardStream::input:
        return STDIN_FILENO;
    case StandardStream::output:
        return STDOUT_FILENO;
    case StandardStream::error:
        break;
    }
    return STDERR_FILENO;
}

const CancelToken* interruptToken = nullptr;

/// Only sets a flag, which is all that a signal handler may do.
void onSignal(int) {
    interruptToken->cancel();
}

} // namespace

bool isTerminal(StandardStream stream) {
    return isatty(descriptorOf(stream)) == 1;
}

size_t terminalWidth() {
    for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
        winsize size{};
        if (ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
            return size.ws_col;
    }
    return 80;
}

CancelToken cancelOnInterrupt() {
    static const CancelToken token;
    interruptToken = &token;
    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
    return token;
}

} // namespace vh
