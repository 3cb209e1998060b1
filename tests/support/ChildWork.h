#pragma once

#include <functional>
#include <string>

namespace vh::test {

/// How a piece of work went that ran in a process of its own.
struct ChildOutcome {
    int status = 0;      ///< 0 done, 1 threw, 2 a test check failed in it, 128 + n killed by signal n
    std::string message; ///< what() of what it threw
};

/// Runs the work in a child process, so that what it does to its process (user, limits, mounts) ends with it.
ChildOutcome runInChild(const std::function<void()>& work);

/// Runs the work in a child process as a user without rights, which tests of denied access need when the tests run
/// as the administrator. An ordinary user stays who they are.
ChildOutcome runUnprivileged(const std::function<void()>& work);

} // namespace vh::test
