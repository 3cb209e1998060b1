#include "support/RandomKills.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace vh::test {

namespace {

using std::chrono::nanoseconds;
using Clock = std::chrono::steady_clock;

/// This process dies after so long, wherever it is then.
void dieAfter(nanoseconds time) {
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer{};
    constexpr int64_t second = 1'000'000'000;
    const itimerspec due{{}, {time.count() / second, std::max<int64_t>(1, time.count() % second)}};
    if (::timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 || ::timer_settime(timer, 0, &due, nullptr) != 0)
        ::_exit(1);
}

/// True when it was killed. What fails in the child fails here.
bool isKilled(const std::function<void()>& work, nanoseconds after) {
    const pid_t child = ::fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        dieAfter(after);
        try {
            work();
        } catch (...) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "waitpid");
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)
        return true;
    EXPECT_EQ(status, 0) << "the work failed without a kill";
    return false;
}

bool isFolder(const std::string& description) {
    return description.starts_with('4');
}

} // namespace

void RandomKills::run() const {
    constexpr int untilFinished = 5;
    std::mt19937 random(seed);
    setUp();
    const auto begin = Clock::now();
    EXPECT_FALSE(isKilled(work, std::chrono::minutes(5)));
    const nanoseconds whole = Clock::now() - begin;
    setUp();
    int done = 0;
    for (int tries = 0; done < kills && !testing::Test::HasFailure(); ++tries) {
        ASSERT_LT(tries, kills * 10) << "it is hardly ever met";
        const nanoseconds moment(std::uniform_int_distribution<int64_t>(1, whole.count())(random));
        if (!isKilled(work, moment)) {
            setUp();
            continue;
        }
        SCOPED_TRACE("kill " + std::to_string(++done));
        check();
        if (done % untilFinished != 0 && done < kills)
            continue;
        finish();
        setUp();
    }
}

void expectOldOrNew(const Tree& now, const Tree& old, const Tree& finally, std::string_view suffix) {
    for (const auto& [path, description] : now) {
        const auto before = old.find(path), after = finally.find(path);
        const bool isKnown = before != old.end() || after != finally.end();
        EXPECT_TRUE(isKnown || path.ends_with(suffix)) << path << " came from nowhere";
        if (isKnown && !isFolder(description)) {
            EXPECT_TRUE((before != old.end() && description == before->second) ||
                        (after != finally.end() && description == after->second))
                << path << " is neither old nor new: " << description.substr(0, 60);
        }
    }
    for (const auto& [path, description] : old)
        EXPECT_TRUE(now.contains(path) || !finally.contains(path)) << path << " is gone";
}

void expectSame(const Tree& now, const Tree& finally) {
    for (const auto& [path, description] : now) {
        const auto shall = finally.find(path);
        EXPECT_TRUE(shall != finally.end() && shall->second == description)
            << path << " is " << description.substr(0, 60) << "\nand shall be "
            << (shall == finally.end() ? "gone" : shall->second.substr(0, 60));
    }
    for (const auto& [path, description] : finally)
        EXPECT_TRUE(now.contains(path)) << path << " is missing";
}

} // namespace vh::test
