#include "Platform/WholeDisks.h"

#include "Platform/Blank.h"
#include "Platform/Posix/DiskUtility.h"
#include "Platform/Process.h"
#include "Platform/SystemError.h"

#include <fmt/format.h>
#include <stdexcept>

namespace vh {

namespace {

/// Empty when it fails.
std::string jsonOf(const std::vector<std::string>& command) {
    try {
        ProcessResult told = runProcess({.arguments = command});
        if (told.succeeded())
            told = runProcess({.arguments = diskUtility::toJson, .input = told.output});
        return told.succeeded() ? told.output : std::string();
    } catch (const SystemError&) {
        return {};
    }
}

} // namespace

std::vector<DiskFacts> wholeDisks() {
    return diskUtility::disksIn(jsonOf(diskUtility::list),
                                [](const std::string& disk) { return jsonOf(diskUtility::info(disk)); });
}

void unmountDisk(const DiskFacts& disk) {
    if (disk.holdsSystem)
        throw std::runtime_error(disk.device + " holds the running system");
    const ProcessResult result =
        runProcess({.arguments = diskUtility::unmount(disk.device), .output = ProcessOutput::combined});
    if (!result.succeeded())
        throw std::runtime_error(fmt::format("{}: {}", disk.device, trimmed(result.output)));
}

} // namespace vh
