#include "Features/Optimize/work/OptimizeRunner.h"

#include "Core/RunLog.h"
#include "Features/Optimize/work/OptimizeCheck.h"
#include "Features/Optimize/work/OptimizeRun.h"
#include "Platform/FileLock.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"

namespace vh::automation {

struct OptimizeRunner::State {
    const AutomationDependencies& dependencies;
    const ScheduledActions& actions;
    const Limits limits;
    const std::shared_ptr<OptimizeBoard> board = std::make_shared<OptimizeBoard>(dependencies.loop);
    LimitedWork work{limits.grace}; ///< goes first, for its end uses the others

    RunLog& log() const { return dependencies.runs.log; }
    OptimizeParts parts() { return {dependencies, actions, limits, *board, work}; }
};

namespace {

/// The right to be the one run of all processes. Nothing while another one has it.
std::shared_ptr<void> takeTurn(const Folders& folders) {
    try {
        const std::string folder = folders.data + "/Varnholt";
        makeFolders(folder);
        auto lock = std::make_shared<FileLock>(FileLock::tryLock(folder + "/optimize.lock"));
        return *lock ? lock : nullptr;
    } catch (const SystemError&) {
        // A full disk must not keep from running what would empty it.
        return std::make_shared<bool>(true);
    }
}

} // namespace

OptimizeRunner::OptimizeRunner(const AutomationDependencies& dependencies, const ScheduledActions& actions,
                               const Limits& limits)
    : state_(new State{dependencies, actions, limits}) {}

OptimizeRunner::~OptimizeRunner() = default;

RunRecord OptimizeRunner::run(const OptimizeProfile& profile, Trigger trigger, const JobControl& control,
                              const RunDetails& details) {
    const Texts texts = state_->dependencies.texts();
    const auto turn = takeTurn(state_->dependencies.folders);
    if (!turn || !state_->board->beginRun(profile.steps(), state_->dependencies.clock(),
                                          texts.text("home.optimize-starting")))
        return state_->log()
            .beginPart(OptimizeRun::toolID, trigger, details)
            ->finish(Outcome::failed, RunWords({{"optimize.already-running", {}}}, texts));
    RunRecord record = OptimizeRun(state_->parts(), trigger, details, control).run();
    state_->board->endRun(record);
    return record;
}

std::vector<OptimizeRunner::Check> OptimizeRunner::check(const OptimizeProfile& profile,
                                                         const JobControl& control) {
    OptimizeBoard& board = *state_->board;
    if (!board.beginCheck())
        return snapshot().checks;
    auto checks = OptimizeCheck(state_->parts(), control).run(profile.steps());
    board.endCheck(checks, state_->dependencies.clock());
    return checks;
}

void OptimizeRunner::requestCancel() {
    state_->board->requestCancel();
}

OptimizeRunner::Snapshot OptimizeRunner::snapshot() const {
    return state_->board->snapshot(state_->log());
}

std::shared_ptr<void> OptimizeRunner::observe(std::function<void()> changed) {
    return state_->board->observe(std::move(changed));
}

} // namespace vh::automation
