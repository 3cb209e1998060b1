#include "Features/Schedules/work/TaskTurn.h"

#include "Core/Codec.h"
#include "Platform/Files.h"
#include "Platform/Removal.h"
#include "Platform/SystemError.h"

#include <filesystem>

namespace vh::automation {

TaskTurn::TaskTurn(FileLock lock, std::string claimFile)
    : lock_(std::move(lock)), claimFile_(std::move(claimFile)) {}

std::unique_ptr<TaskTurn> TaskTurn::take(const std::string& tasksFile) {
    std::filesystem::path base(tasksFile);
    makeFolders(base.parent_path());
    base.replace_extension("running");
    FileLock lock = FileLock::tryLock(base.native() + ".lock");
    if (!lock)
        return nullptr;
    return std::unique_ptr<TaskTurn>(new TaskTurn(std::move(lock), base.native() + ".json"));
}

std::optional<TaskClaim> TaskTurn::leftover() const {
    try {
        if (const auto text = readFileIfPresent(claimFile_))
            return decodeJson<TaskClaim>(*text);
    } catch (const std::runtime_error&) {
        // Cut short or out of reach: nothing can be said of its task, which is still due then.
    }
    return std::nullopt;
}

void TaskTurn::claim(const TaskClaim& claim) {
    try {
        writeFileAtomically(claimFile_, encodeJson(claim) + "\n");
    } catch (const SystemError&) {
        // A full disk must not keep the task from running that would empty it.
    }
}

void TaskTurn::end() {
    if (!lock_)
        return;
    try {
        if (statusOf(claimFile_))
            removePermanently(claimFile_);
    } catch (const SystemError&) {
        // Whoever comes next finds the run's record and takes it for done.
    }
    lock_.reset();
}

} // namespace vh::automation
