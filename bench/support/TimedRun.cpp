// timed_run COMMAND…: runs a program, its output thrown away. Prints its microseconds and the bytes of memory it took at
// most; ends as it did.
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int count, char** arguments) {
    if (count < 2)
        return 2;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    if (const int error = ::posix_spawnp(&child, arguments[1], &actions, nullptr, arguments + 1, environ)) {
        std::fprintf(stderr, "%s: %s\n", arguments[1], std::strerror(error));
        return 127;
    }
    int status = 0;
    rusage usage{};
    while (::wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    const auto took = std::chrono::steady_clock::now() - start;
    std::printf("%lld %lld\n",
                static_cast<long long>(std::chrono::duration_cast<std::chrono::microseconds>(took).count()),
                static_cast<long long>(int64_t{usage.ru_maxrss} * 1024));
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
