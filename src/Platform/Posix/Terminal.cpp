#include "Platform/Terminal.h"

#include "Platform/Posix/Pipe.h"

#include <cerrno>
#include <csignal>
#include <iostream>
#include <sys/ioctl.h>
#include <termios.h>
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
int interruptWriting = -1;

/// Sets a flag and writes a byte, which is about all that a signal handler may do.
void onSignal(int) {
    interruptToken->cancel();
    const int before = errno;
    [[maybe_unused]] const auto written = ::write(interruptWriting, "", 1);
    errno = before;
}

const Pipe& interruptPipe() {
    static const Pipe pipe = openPipe();
    return pipe;
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

std::optional<std::string> readHiddenLine() {
    termios before{};
    const bool hides = tcgetattr(STDIN_FILENO, &before) == 0;
    if (hides) {
        termios hidden = before;
        hidden.c_lflag &= ~tcflag_t(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    std::string line;
    const bool isRead = static_cast<bool>(std::getline(std::cin, line));
    if (hides)
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
    return isRead ? std::optional(line) : std::nullopt;
}

CancelToken cancelOnInterrupt() {
    static const CancelToken token;
    interruptToken = &token;
    interruptWriting = interruptPipe().writing.get();
    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
    return token;
}

int interruptDescriptor() {
    return interruptPipe().reading.get();
}

} // namespace vh
