#include "Tools/Maintenance/work/TasksRun.h"

#include "Core/Printable.h"
#include "HelperKit/MaintenanceTexts.h"

#include <fmt/ranges.h>

namespace vh::automation {

namespace {

/// Of one task's output; how it ended stands last.
constexpr size_t keptOutput = 2048;

std::string lastOf(const std::string& output) {
    if (output.size() <= keptOutput)
        return output;
    const size_t line = output.find('\n', output.size() - keptOutput);
    return "…" + (line == std::string::npos ? std::string() : output.substr(line));
}

} // namespace

void TasksRun::run(const std::vector<MaintenanceTask>& tasks) {
    for (size_t i = 0; i < tasks.size() && !wasCancelled_; ++i) {
        control_.report(static_cast<double>(i) / static_cast<double>(tasks.size()),
                        taskTitle(tasks[i], work_.system(), texts_));
        runOne(tasks[i]);
    }
}

void TasksRun::runOne(MaintenanceTask task) {
    using enum helper::MaintenanceEnd::Kind;
    const Message title = helper::titleMessage(task, work_.system());
    if (work_.lacksOnlyHelper(task)) {
        needing_.push_back(title);
        return;
    }
    const helper::MaintenanceEnd end = work_.run(task, control_.cancel);
    if (!end.output.empty())
        output_ +=
            fmt::format("{}{}\n{}", output_.empty() ? "" : "\n", worded(title, texts_), lastOf(end.output));
    wasCancelled_ = end.kind == stopped || end.kind == leftToHelper;
    if (end.kind == done)
        ++done_;
    else if (end.kind == failed)
        failures_.push_back(
            {"run.named",
             {{"name", title}, {"text", end.reason.value_or(helper::failureMessage(task, work_.system()))}}});
    else if (end.kind == leftToHelper)
        left_ = Message{"maintenance.left-to-helper", {{"title", title}}};
}

Outcome TasksRun::outcome() const {
    if (wasCancelled_)
        return Outcome::cancelled;
    if (done_ == 0)
        return Outcome::failed;
    return failures_.empty() && needing_.empty() ? Outcome::success : Outcome::warning;
}

RunWords TasksRun::words() const {
    Messages sentences;
    if (done_ > 0)
        sentences.push_back({"scheduled-action.tasks-done", {{"count", done_}}});
    if (!needing_.empty())
        sentences.push_back(
            {"scheduled-action.tasks-need-helper", {{"count", needing_.size()}, {"tasks", needing_}}});
    sentences.insert(sentences.end(), failures_.begin(), failures_.end());
    if (wasCancelled_)
        sentences.push_back(left_.value_or(Message{"scheduled-action.stopped", {}}));
    Messages lines = failures_;
    if (left_)
        lines.push_back(*left_);
    return {sentences, texts_, lines};
}

RunMetrics TasksRun::metrics() const {
    return {{RunMetric::itemsProcessed, static_cast<double>(done_)},
            {RunMetric::errors, static_cast<double>(failures_.size() + needing_.size())}};
}

RunDetails TasksRun::details() const {
    return {{RunDetail::output, output_}};
}

} // namespace vh::automation
