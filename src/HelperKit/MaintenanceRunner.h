#pragma once

#include "HelperKit/MaintenanceTable.h"
#include "Platform/CancelToken.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace vh::helper {

/// Runs a task's commands one after the other. Blocks; any thread.
class MaintenanceRunner {
public:
    struct Result {
        bool succeeded = false;
        /// Of all commands, UTF-8 without zero bytes, bounded; how it ended stands last when it did not succeed.
        std::string output;
    };
    struct Execution {
        int status = -1; ///< -1 when it could not be started
        std::string output;
        bool timedOut = false;
    };

    /// `timeout` is that of each command. Throws Cancelled.
    static Result run(const MaintenancePlan& plan, std::chrono::seconds timeout,
                      const CancelToken& cancel = {});
    /// With a `dialogue` (ProcessRequest) the command runs at a terminal. Throws Cancelled.
    static Execution execute(const MaintenanceCommand& command, std::chrono::milliseconds timeout,
                             const CancelToken& cancel = {},
                             std::function<std::string(std::string_view)> dialogue = {});
};

} // namespace vh::helper
