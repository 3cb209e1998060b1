#pragma once

#include "Automation/AutomationDependencies.h"
#include "Core/JobControl.h"
#include "Core/RunRecord.h"
#include "Core/Uuid.h"
#include "Features/Optimize/work/OptimizeProfile.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vh::automation {

class ScheduledActions;

/// The one-button run: the steps of a profile, one after the other, as one run record. One at a time among all
/// processes. Its state may be read from any thread; `run` and `check` block and are called off the main thread.
class OptimizeRunner {
public:
    enum class StepState { pending, running, done, warning, failed, skipped };
    struct Step {
        Uuid id;
        ScheduledAction action;
        std::map<std::string, std::string> payload;
        StepState state = StepState::pending;
        std::string text; ///< what it did; empty until it is over
        std::optional<Date> startedAt;
        std::optional<double> duration; ///< seconds
        std::vector<std::string> details;
        int skipped = 0; ///< of its maintenance tasks, or items that had to stay
    };
    /// What a step would do.
    struct Check {
        Uuid id;
        ScheduledAction action;
        std::string title;
        std::string detail;
        bool removes = false; ///< it would delete something
    };
    /// All that views show, taken at one moment.
    struct Snapshot {
        std::vector<Step> steps;
        bool isRunning = false;
        std::optional<Date> startedAt;
        std::string detail;
        std::optional<RunRecord> lastRecord; ///< of the last run, also of one before this process
        std::vector<Check> checks;
        std::optional<Date> checkedAt;
        bool isChecking = false;
    };

    /// What takes longer is asked to stop and left to end by itself.
    struct Limits {
        std::chrono::milliseconds maintenance = std::chrono::seconds(600);
        std::chrono::milliseconds otherStep = std::chrono::seconds(900);
        std::chrono::milliseconds check = std::chrono::seconds(60); ///< of all steps
        std::chrono::milliseconds grace = std::chrono::seconds(5);  ///< for what was asked to stop
    };

    OptimizeRunner(const AutomationDependencies& dependencies, const ScheduledActions& actions,
                   const Limits& limits);
    OptimizeRunner(const AutomationDependencies& dependencies, const ScheduledActions& actions)
        : OptimizeRunner(dependencies, actions, Limits()) {}
    /// Waits for what was left to end.
    ~OptimizeRunner();
    OptimizeRunner(const OptimizeRunner&) = delete;
    OptimizeRunner& operator=(const OptimizeRunner&) = delete;

    /// Never throws. While another one runs it gives a failed record that is not in the log.
    RunRecord run(const OptimizeProfile& profile, Trigger trigger, const JobControl& control = {},
                  const RunDetails& details = {});
    /// Changes nothing. A second one at the same time gives what the one before found.
    std::vector<Check> check(const OptimizeProfile& profile, const JobControl& control = {});
    /// The step that runs ends as soon as it can, those after it are skipped.
    void requestCancel();

    Snapshot snapshot() const;
    /// Called on the main loop's thread after changes, several of them together at times; ends with the token. Main
    /// thread.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh::automation
