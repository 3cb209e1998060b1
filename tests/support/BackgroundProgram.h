#pragma once

#include "Platform/CancelToken.h"

#include <string>
#include <thread>
#include <vector>

namespace vh::test {

/// A program that serves a test while this lives, and says in its first line of output where it can be reached.
class BackgroundProgram {
public:
    /// Waits for the line. Throws std::runtime_error when none comes.
    explicit BackgroundProgram(std::vector<std::string> arguments);
    ~BackgroundProgram() { stop(); }
    BackgroundProgram(const BackgroundProgram&) = delete;
    BackgroundProgram& operator=(const BackgroundProgram&) = delete;

    const std::string& firstLine() const { return firstLine_; }
    void stop();

private:
    CancelToken cancel_;
    std::thread thread_;
    std::string firstLine_;
};

} // namespace vh::test
