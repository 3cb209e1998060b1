#include "Platform/Posix/PseudoTerminal.h"

#include "Platform/Posix/Calls.h"

#include <cstdlib>
#include <termios.h>
#include <unistd.h>

namespace vh {

namespace {

constexpr auto subject = "pseudo-terminal";

FileDescriptor beyondStandard(int file) {
    FileDescriptor moved(::fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!moved)
        throwErrno(subject);
    return moved;
}

} // namespace

PseudoTerminal openPseudoTerminal() {
    const FileDescriptor opened(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!opened || ::grantpt(opened.get()) != 0 || ::unlockpt(opened.get()) != 0)
        throwErrno(subject);
    const char* const path = ::ptsname(opened.get());
    if (path == nullptr)
        throwErrno(subject);
    PseudoTerminal terminal{beyondStandard(opened.get()), beyondStandard(opened.get()), {}, path};
    const FileDescriptor program = openPath(terminal.path, O_RDWR | O_NOCTTY);
    terminal.program = beyondStandard(program.get());
    termios settings{};
    if (::tcgetattr(program.get(), &settings) != 0)
        throwErrno(terminal.path);
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
    settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    if (::tcsetattr(program.get(), TCSANOW, &settings) != 0)
        throwErrno(terminal.path);
    return terminal;
}

} // namespace vh
