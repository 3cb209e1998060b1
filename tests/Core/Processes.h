#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace vh::test {

/// Works in other processes, all at once; each must end well. Start them while no thread holds a lock: a child would
/// inherit it.
class Processes {
public:
    void start(const std::function<void()>& work) {
        const pid_t child = ::fork();
        if (child == 0) {
            try {
                work();
            } catch (...) {
                ::_exit(1);
            }
            ::_exit(testing::Test::HasFailure() ? 2 : 0);
        }
        children_.push_back(child);
    }
    void finish() {
        for (const pid_t child : children_) {
            int status = -1;
            ::waitpid(child, &status, 0);
            EXPECT_EQ(status, 0) << "another process failed";
        }
        children_.clear();
    }

private:
    std::vector<pid_t> children_;
};

} // namespace vh::test
