#pragma once

#include "Platform/CancelToken.h"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

enum class ProcessOutput { split, combined };

/// One program to run. Never a shell: `arguments[0]` is the program, found through PATH.
struct ProcessRequest {
    std::vector<std::string> arguments;
    std::string input;                              ///< given on standard input, which then ends
    ProcessOutput output = ProcessOutput::split;    ///< combined: errors arrive in `output` in their order
    std::map<std::string, std::string> environment; ///< added to this process's own
    std::string folder;                             ///< working folder; empty: this process's
    std::optional<std::chrono::milliseconds> timeLimit;
    std::chrono::milliseconds grace{3000}; ///< between asking it to end and killing it
    bool endsWithParent = false;           ///< killed, it alone, when this process is killed
    size_t maxOutputBytes = 64u << 20;     ///< what comes beyond is read and dropped
    std::function<void(std::string_view)>
        onOutput; ///< each piece of standard output as it comes, on this thread
    /// When set, the program runs at a terminal of its own, in place of all three streams, that does not show what is
    /// typed. It gets each piece of output as it comes, on this thread, and gives what is to be typed then.
    std::function<std::string(std::string_view)> dialogue;
};

enum class ProcessEnd { exited, signalled, timedOut, cancelled };

struct ProcessResult {
    ProcessEnd end = ProcessEnd::exited;
    int status = 0; ///< exit status, or the signal's number
    std::string output;
    std::string errors;
    bool succeeded() const { return end == ProcessEnd::exited && status == 0; }
};

/// Runs a program to its end. The program gets a process group of its own, and terminate-then-kill reaches its
/// children too. Blocks; throws SystemError when the program cannot be started ("No such file or directory").
[[nodiscard]] ProcessResult runProcess(const ProcessRequest& request, const CancelToken& cancel = {});

/// The absolute path of a program in PATH, nothing when there is none.
std::optional<std::string> findProgram(std::string_view name);

} // namespace vh
