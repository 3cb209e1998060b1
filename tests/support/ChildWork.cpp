#include "support/ChildWork.h"

#include <cerrno>
#include <cstdio>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace vh::test {

namespace {

constexpr unsigned nobody = 65534;

[[noreturn]] void fail(const char* call) {
    throw std::system_error(errno, std::generic_category(), call);
}

int failedChecks() {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    return test == nullptr ? 0 : test->result()->total_part_count();
}

[[noreturn]] void workAndExit(const std::function<void()>& work, int messages) {
    const int before = failedChecks();
    int status = 0;
    std::string message;
    try {
        work();
        status = failedChecks() > before ? 2 : 0;
    } catch (const std::exception& error) {
        status = 1;
        message = error.what();
    }
    std::fflush(stdout);
    if (!message.empty() && ::write(messages, message.data(), message.size()) < 0)
        status = 1;
    ::_exit(status);
}

std::string readToEnd(int file) {
    std::string text;
    char block[512];
    for (ssize_t got = 0; (got = ::read(file, block, sizeof block)) > 0;)
        text.append(block, static_cast<size_t>(got));
    return text;
}

} // namespace

ChildOutcome runInChild(const std::function<void()>& work) {
    int ends[2];
    if (::pipe(ends) != 0)
        fail("pipe");
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child < 0)
        fail("fork");
    if (child == 0)
        workAndExit(work, ends[1]);
    ::close(ends[1]);
    ChildOutcome outcome;
    outcome.message = readToEnd(ends[0]);
    ::close(ends[0]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            fail("waitpid");
    outcome.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return outcome;
}

ChildOutcome runUnprivileged(const std::function<void()>& work) {
    return runInChild([&] {
        if (::geteuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
                                 ::setresuid(nobody, nobody, nobody) != 0))
            fail("setresuid");
        work();
    });
}

} // namespace vh::test
