#include "HelperKit/MaintenanceRunner.h"

#include "Core/ValidText.h"
#include "Platform/Blank.h"
#include "Platform/Process.h"
#include "Platform/SystemError.h"

#include <algorithm>

namespace vh::helper {

namespace {

constexpr std::chrono::seconds grace{5};
/// Of each command; nobody reads more.
constexpr size_t mostOutputBytes = 1u << 20;
constexpr int notStarted = -1;
/// As shells count, so that no signal looks like a status of the program's own.
constexpr int signalBase = 128;

/// killall says 1 when no such process runs, so that there is nothing to restart.
bool passes(const MaintenanceCommand& command, int status) {
    return status == 0 || (status == 1 && command.executable.ends_with("/killall")) ||
           std::ranges::find(command.alsoPasses, status) != command.alsoPasses.end();
}

/// Of a program's output; nothing stands for zero bytes, as at a terminal.
std::string textOf(std::string_view output) {
    std::string text = validText(trimmed(output));
    std::erase(text, '\0');
    return text;
}

void append(std::string& log, std::string_view text) {
    if (!log.empty() && !text.empty())
        log += '\n';
    log += text;
}

} // namespace

MaintenanceRunner::Result MaintenanceRunner::run(const MaintenancePlan& plan, std::chrono::seconds timeout,
                                                 const CancelToken& cancel) {
    Result result;
    for (const MaintenanceCommand& command : plan.commands) {
        const Execution done = execute(command, timeout, cancel);
        append(result.output, done.output);
        if (done.timedOut) {
            append(result.output, "timed out after " + std::to_string(timeout.count()));
            return result;
        }
        if (!passes(command, done.status)) {
            append(result.output, "exit " + std::to_string(done.status));
            return result;
        }
    }
    result.succeeded = plan.isPossible();
    return result;
}

MaintenanceRunner::Execution
MaintenanceRunner::execute(const MaintenanceCommand& command, std::chrono::milliseconds timeout,
                           const CancelToken& cancel, std::function<std::string(std::string_view)> dialogue) {
    ProcessRequest request{.arguments = {command.executable}};
    request.arguments.insert(request.arguments.end(), command.arguments.begin(), command.arguments.end());
    request.output = ProcessOutput::combined;
    request.environment = {{"DEBIAN_FRONTEND", "noninteractive"}, {"LC_ALL", "C.UTF-8"}};
    request.timeLimit = timeout;
    request.grace = grace;
    request.maxOutputBytes = mostOutputBytes;
    request.dialogue = std::move(dialogue);
    try {
        const ProcessResult result = runProcess(request, cancel);
        if (result.end == ProcessEnd::cancelled)
            throw Cancelled();
        const int status = result.end == ProcessEnd::signalled ? signalBase + result.status : result.status;
        return {status, textOf(result.output), result.end == ProcessEnd::timedOut};
    } catch (const SystemError& error) {
        return {notStarted, validText(error.what()), false};
    }
}

} // namespace vh::helper
