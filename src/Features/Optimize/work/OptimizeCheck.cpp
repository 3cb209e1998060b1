#include "Features/Optimize/work/OptimizeCheck.h"

#include "Core/ByteFormat.h"
#include "Core/SuiteModule.h"
#include "HelperKit/MaintenanceTexts.h"
#include "HelperKit/TaskList.h"

namespace vh::automation {

namespace {

/// What a cleaner found, or why not.
struct Found {
    ScanReport report;
    std::optional<std::string> error;
};

std::chrono::milliseconds until(std::chrono::steady_clock::time_point deadline) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
}

} // namespace

OptimizeCheck::OptimizeCheck(const OptimizeParts& parts, const JobControl& control)
    : parts_(parts), control_(control), texts_(parts.dependencies.texts()),
      deadline_(std::chrono::steady_clock::now() + parts.limits.check) {}

std::vector<OptimizeCheck::Check> OptimizeCheck::run(const std::vector<OptimizeProfile::Step>& steps) {
    for (const auto& step : steps) {
        if (control_.cancel.isCancelled())
            break;
        try {
            look(step);
        } catch (const std::exception& error) {
            checks_.push_back(failure(step.action, error.what()));
        }
    }
    return std::move(checks_);
}

void OptimizeCheck::look(const OptimizeProfile::Step& step) {
    if (!parts_.actions.isThere(step.action))
        checks_.push_back(failure(step.action, texts_.text("scheduled-action.not-there-yet",
                                                           {{"tool", titleOf(step.action, texts_)}})));
    else if (step.action == ScheduledAction::maintenance)
        lookAtTasks(step);
    else if (step.action == ScheduledAction::smartHealth)
        checks_.push_back(line(step.action, texts_.text("optimize.check.reads-only")));
    else
        checks_.push_back(lookAtItems(step.action));
}

void OptimizeCheck::lookAtTasks(const OptimizeProfile::Step& step) {
    const helper::MaintenanceWork work = parts_.dependencies.maintenance();
    for (const MaintenanceTask task : tasksOf(step.payload.at("tasks"))) {
        Check check = line(step.action, taskDetail(task, work.system(), texts_));
        check.title = taskTitle(task, work.system(), texts_);
        if (work.lacksOnlyHelper(task))
            check.detail = texts_.text("optimize.check.root-skipped");
        else if (const std::string blocker = work.blocker(task, texts_); !blocker.empty())
            check.detail = blocker;
        checks_.push_back(std::move(check));
    }
}

OptimizeCheck::Check OptimizeCheck::lookAtItems(ScheduledAction action) {
    const auto found = std::make_shared<Found>();
    const auto end = parts_.work.run(
        {until(deadline_), [this] { return control_.cancel.isCancelled(); },
         [this](double fraction, std::string_view what) {
             control_.report(fraction, what);
         }},
        [found, module = parts_.dependencies.module(rawValue(action))](const JobControl& control) {
            try {
                found->report = module->scan(control).settled();
            } catch (const std::exception& error) {
                found->error = error.what();
            }
        });
    if (end != LimitedWork::End::over)
        return failure(action, texts_.text("optimize.step.timed-out"));
    if (found->error)
        return failure(action, *found->error);
    const ScanReport& report = found->report;
    if (report.items.empty())
        return line(action, texts_.text("optimize.check.nothing-to-remove"));
    Check check = line(action, texts_.text("optimize.check.items-to-trash",
                                           {{"count", report.items.size()},
                                            {"size", sizeText(report.totalBytes(), texts_.language())}}));
    check.removes = true;
    return check;
}

OptimizeCheck::Check OptimizeCheck::failure(ScheduledAction action, const std::string& reason) const {
    return line(action, texts_.text("optimize.check.could-not-check", {{"reason", reason}}));
}

OptimizeCheck::Check OptimizeCheck::line(ScheduledAction action, std::string detail) const {
    return {Uuid::random(), action, titleOf(action, texts_), std::move(detail), false};
}

} // namespace vh::automation
