#pragma once

#include "Automation/ScheduledActions.h"
#include "Core/RunJournal.h"
#include "Features/Optimize/work/LimitedWork.h"
#include "Features/Optimize/work/OptimizeBoard.h"

#include <map>
#include <string>
#include <vector>

namespace vh::automation {

/// What the one-button run works with.
struct OptimizeParts {
    const AutomationDependencies& dependencies;
    const ScheduledActions& actions;
    const OptimizeRunner::Limits& limits;
    OptimizeBoard& board;
    LimitedWork& work;
};

/// One run of the steps on the board. One thread.
class OptimizeRun {
public:
    static constexpr const char* toolID = "optimize";

    OptimizeRun(const OptimizeParts& parts, Trigger trigger, const RunDetails& details,
                const JobControl& control);
    /// Never throws.
    RunRecord run();

private:
    using Step = OptimizeRunner::Step;
    using StepState = OptimizeRunner::StepState;

    void doAll();
    void doStep(Step& step);
    void perform(Step& step);
    void leaveOutRootTasks(Step& step);
    void take(Step& step, const RunRecord& record, bool isTooLate);
    void say(Step& step, const Message& message);
    void addProblem(Step& step, const Message& problem);
    void report(const Step& step, double fraction, std::string_view what);
    bool isCancelled() const;
    int64_t count(StepState state) const;
    Outcome outcome() const;
    Messages summary() const;
    RunRecord finish();

    const OptimizeParts parts_;
    const RunDetails details_;
    const JobControl& control_;
    const Texts texts_;
    const std::shared_ptr<RunJournal> journal_;
    std::vector<Step> steps_;
    bool wasCancelled_ = false; ///< before all was done
    double freedBytes_ = 0;
    double filesRemoved_ = 0;
    double errors_ = 0;
    std::map<ScheduledAction, Messages> said_;     ///< what the steps' texts are made of
    std::map<ScheduledAction, Messages> problems_; ///< and their details
    std::vector<std::string> output_;
};

} // namespace vh::automation
