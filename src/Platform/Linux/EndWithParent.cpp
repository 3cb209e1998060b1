#include "Platform/Posix/EndWithParent.h"

#include "Platform/Process.h"

namespace vh {

/// Through setpriv of util-linux: posix_spawn itself cannot ask the kernel for the signal (prctl PR_SET_PDEATHSIG).
std::vector<std::string> endingWithParent(std::vector<std::string> arguments) {
    static const auto setpriv = findProgram("setpriv");
    if (setpriv)
        arguments.insert(arguments.begin(), {*setpriv, "--pdeathsig", "KILL", "--"});
    return arguments;
}

} // namespace vh
