#include "support/LoopDisk.h"

#include "Platform/Blank.h"
#include "Platform/Files.h"
#include "Platform/Process.h"

#include <stdexcept>

namespace vh::test {

std::string LoopDisk::run(const std::vector<std::string>& words) {
    const ProcessResult result = runProcess({.arguments = words});
    if (!result.succeeded())
        throw std::runtime_error(words.front() + ": " + result.errors);
    return result.output;
}

LoopDisk::LoopDisk(const std::string& content) {
    writeFileAtomically(folder_ / "disk", content);
    device_ = trimmed(run({"losetup", "--find", "--show", "--partscan", folder_ / "disk"}));
}

LoopDisk::~LoopDisk() {
    static_cast<void>(runProcess({.arguments = {"losetup", "-d", device_}}));
}

} // namespace vh::test
