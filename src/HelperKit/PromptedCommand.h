#pragma once

#include "Platform/CancelToken.h"

#include <chrono>
#include <string>
#include <vector>

namespace vh::helper {

/// Runs a command that asks for answers at a terminal. Blocks; any thread.
class PromptedCommand {
public:
    struct Answer {
        std::string prompt; ///< a piece of what is asked, in either case of letters
        std::string text;   ///< what is typed then, without a line feed; no control characters
    };
    struct Step {
        std::string executable; ///< an absolute path
        std::vector<std::string> arguments;
        std::vector<Answer> answers; ///< in the order in which they are asked
    };
    struct Result {
        int status = -1;    ///< -1 when it could not be started or did not end in time
        std::string output; ///< UTF-8, bounded; what was typed is not in it
    };

    /// Throws Cancelled.
    static Result run(const Step& step, std::chrono::milliseconds timeout, const CancelToken& cancel = {});
};

} // namespace vh::helper
