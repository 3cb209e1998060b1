#include "support/UserLimit.h"

#include "Platform/SystemError.h"

#include <fmt/format.h>
#include <fstream>
#include <sched.h>
#include <stdexcept>
#include <unistd.h>

namespace vh::test {

void setUserLimit(const std::string& name, int value) {
    const auto id = ::geteuid();
    if (::unshare(CLONE_NEWUSER) != 0)
        throwErrno("unshare");
    std::ofstream("/proc/self/uid_map") << fmt::format("0 {} 1", id);
    std::ofstream limit("/proc/sys/user/" + name);
    limit << value << std::flush;
    if (!limit)
        throw std::runtime_error("cannot set the limit");
}

} // namespace vh::test
