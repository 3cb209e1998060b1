#include "Features/Optimize/work/OptimizeRun.h"

#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Core/ToolTexts.h"
#include "HelperKit/MaintenanceTexts.h"
#include "HelperKit/TaskList.h"

#include <algorithm>
#include <chrono>

namespace vh::automation {

namespace {

OptimizeRunner::StepState stateOf(Outcome outcome) {
    using enum OptimizeRunner::StepState;
    switch (outcome) {
    case Outcome::success:
        return done;
    case Outcome::warning:
        return warning;
    case Outcome::failed:
        return failed;
    case Outcome::cancelled:
        break;
    }
    return skipped;
}

bool isCleaner(ScheduledAction action) {
    return action == ScheduledAction::cleanStorage || action == ScheduledAction::cleanPrivacy;
}

} // namespace

OptimizeRun::OptimizeRun(const OptimizeParts& parts, Trigger trigger, const RunDetails& details,
                         const JobControl& control)
    : parts_(parts), details_(details), control_(control), texts_(parts.dependencies.texts()),
      journal_(parts.dependencies.runs.journals.open(
          parts.dependencies.runs.log.begin(toolID, trigger, details), toolName(texts_, toolID))),
      steps_(parts.board.steps()) {}

RunRecord OptimizeRun::run() {
    try {
        doAll();
        return finish();
    } catch (const std::exception& error) { // such as no more threads
        return journal_->finish(Outcome::failed, RunWords({messageOf(error)}, texts_),
                                {{RunMetric::errors, 1}});
    }
}

void OptimizeRun::doAll() {
    for (Step& step : steps_) {
        if (isCancelled()) {
            wasCancelled_ = true;
            step.state = StepState::skipped;
            say(step, {"optimize.step.not-started", {}});
        } else {
            doStep(step);
        }
        parts_.board.setStep(step);
    }
}

void OptimizeRun::doStep(Step& step) {
    step.state = StepState::running;
    step.startedAt = parts_.dependencies.clock();
    parts_.board.setStep(step);
    report(step, 0, texts_.text("home.optimize-starting"));
    const auto start = std::chrono::steady_clock::now();
    if (step.action == ScheduledAction::maintenance)
        leaveOutRootTasks(step);
    if (step.state == StepState::running)
        perform(step);
    step.duration = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void OptimizeRun::leaveOutRootTasks(Step& step) {
    std::vector<MaintenanceTask> left;
    Messages titles;
    const helper::MaintenanceWork work = parts_.dependencies.maintenance();
    for (const MaintenanceTask task : tasksOf(step.payload.at("tasks")))
        if (work.lacksOnlyHelper(task))
            titles.push_back(helper::titleMessage(task, work.system()));
        else
            left.push_back(task);
    step.skipped = static_cast<int>(titles.size());
    if (left.empty()) {
        step.state = StepState::skipped;
        say(step, {"optimize.step.needs-helper", {{"count", titles.size()}}});
        addProblem(step, said_[step.action].front());
    } else if (!titles.empty()) {
        step.payload["tasks"] = taskList(left);
        addProblem(step, {"optimize.step.root-skipped", {{"count", titles.size()}, {"tasks", titles}}});
    }
}

void OptimizeRun::perform(Step& step) {
    const auto limit =
        step.action == ScheduledAction::maintenance ? parts_.limits.maintenance : parts_.limits.otherStep;
    const auto record = std::make_shared<RunRecord>();
    const LimitedWork::End end =
        parts_.work.run({limit, [this] { return isCancelled(); },
                         [&](double fraction, std::string_view what) {
                             report(step, fraction, what);
                         }},
                        [record, &actions = parts_.actions, action = step.action,
                         request = ActionRequest{.toolID = std::string(rawValue(step.action)),
                                                 .payload = step.payload,
                                                 .trigger = Trigger::optimize,
                                                 .details = details_,
                                                 .within = journal_}](const JobControl& control) {
                            *record = actions.run(action, request, control);
                        });
    if (end != LimitedWork::End::left) {
        take(step, *record, end == LimitedWork::End::overTooLate);
        return;
    }
    wasCancelled_ = isCancelled();
    step.state = wasCancelled_ ? StepState::skipped : StepState::failed;
    say(step, {wasCancelled_ ? "scheduled-action.stopped" : "optimize.step.timed-out", {}});
    if (!wasCancelled_)
        ++errors_;
}

void OptimizeRun::take(Step& step, const RunRecord& record, bool isTooLate) {
    step.state = isTooLate ? StepState::failed : stateOf(record.outcome);
    step.text = record.summary;
    said_[step.action] = sentencesOf(record);
    if (isTooLate)
        say(step, {"optimize.step.timed-out", {}});
    wasCancelled_ = wasCancelled_ || step.state == StepState::skipped;
    const double errors = record.metric(RunMetric::errors).value_or(0);
    if (isCleaner(step.action) && step.state != StepState::failed)
        step.skipped = static_cast<int>(errors);
    for (const Message& problem : problemsOf(record))
        addProblem(step, problem);
    if (const auto output = record.detail(RunDetail::output))
        output_.push_back(*output);
    freedBytes_ += record.metric(RunMetric::freedBytes).value_or(0);
    filesRemoved_ += record.metric(RunMetric::filesRemoved).value_or(0);
    errors_ += isTooLate ? errors + 1 : errors;
}

void OptimizeRun::say(Step& step, const Message& message) {
    said_[step.action] = {message};
    step.text = worded(message, texts_);
}

void OptimizeRun::addProblem(Step& step, const Message& problem) {
    step.details.push_back(worded(problem, texts_));
    problems_[step.action].push_back(problem);
}

void OptimizeRun::report(const Step& step, double fraction, std::string_view what) {
    const auto line = texts_.text("optimize.progress-line",
                                  {{"step", titleOf(step.action, texts_)}, {"what", printable(what)}});
    parts_.board.setDetail(line);
    const auto index = static_cast<double>(&step - steps_.data());
    control_.report((index + std::clamp(fraction, 0.0, 1.0)) / static_cast<double>(steps_.size()), line);
}

bool OptimizeRun::isCancelled() const {
    return control_.cancel.isCancelled() || parts_.board.isCancelRequested();
}

int64_t OptimizeRun::count(StepState state) const {
    return std::ranges::count(steps_, state, &Step::state);
}

Outcome OptimizeRun::outcome() const {
    const auto failed = count(StepState::failed);
    if (failed > 0 && failed == static_cast<int64_t>(steps_.size()))
        return Outcome::failed;
    if (wasCancelled_)
        return Outcome::cancelled;
    const bool isMarred = std::ranges::any_of(
        steps_, [](const Step& step) { return step.state != StepState::done || step.skipped > 0; });
    return isMarred ? Outcome::warning : Outcome::success;
}

Messages OptimizeRun::summary() const {
    if (steps_.empty())
        return {{"optimize.summary.no-steps", {}}};
    Messages said{freedBytes_ > 0 ? Message{"optimize.summary.freed",
                                            {{"bytes", ByteCount{static_cast<int64_t>(freedBytes_)}}}}
                                  : Message{"optimize.summary.nothing-freed", {}}};
    const auto add = [&](const char* key, int64_t number) {
        if (number > 0)
            said.push_back({key, {{"count", number}}});
    };
    int64_t files = 0;
    int64_t tasks = 0;
    for (const Step& step : steps_)
        (isCleaner(step.action) ? files : tasks) += step.skipped;
    said.push_back(
        {"optimize.summary.steps-done", {{"count", count(StepState::done) + count(StepState::warning)}}});
    add("optimize.summary.files-skipped", files);
    add("optimize.summary.tasks-skipped", tasks);
    add("optimize.summary.failed", count(StepState::failed));
    return said;
}

RunRecord OptimizeRun::finish() {
    Messages problems;
    for (const Step& step : steps_) {
        const Messages& own = problems_[step.action];
        if (step.state == StepState::failed && own.empty())
            problems.push_back({"optimize.progress-line",
                                {{"step", titleMessage(step.action)}, {"what", said_[step.action]}}});
        problems.insert(problems.end(), own.begin(), own.end());
    }
    return journal_->finish(outcome(), RunWords(summary(), texts_, problems),
                            {{RunMetric::freedBytes, freedBytes_},
                             {RunMetric::filesRemoved, filesRemoved_},
                             {RunMetric::errors, errors_}},
                            {{RunDetail::files, std::to_string(static_cast<int64_t>(filesRemoved_))},
                             {RunDetail::bytes, std::to_string(static_cast<int64_t>(freedBytes_))},
                             {RunDetail::output, joinList(output_)}});
}

} // namespace vh::automation
