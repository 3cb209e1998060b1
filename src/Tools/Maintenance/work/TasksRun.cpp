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
    const std::string title = taskTitle(task, work_.system(), texts_);
    if (work_.lacksOnlyHelper(task)) {
        needing_.push_back(title);
        return;
    }
    const helper::MaintenanceEnd end = work_.run(task, texts_, control_.cancel);
    if (!end.output.empty())
        output_ += fmt::format("{}{}\n{}", output_.empty() ? "" : "\n", title, lastOf(end.output));
    wasCancelled_ = end.kind == stopped || end.kind == leftToHelper;
    if (end.kind == done)
        ++done_;
    else if (end.kind == failed)
        fail(title, end.reason.empty() ? failureSummary(task, work_.system(), texts_) : end.reason);
    else if (end.kind == leftToHelper)
        left_ = texts_.text("maintenance.left-to-helper", {{"title", title}});
}

void TasksRun::fail(const std::string& title, const std::string& reason) {
    failures_.push_back(title + texts_.text("common.colon") + printable(reason));
}

Outcome TasksRun::outcome() const {
    if (wasCancelled_)
        return Outcome::cancelled;
    if (done_ == 0)
        return Outcome::failed;
    return failures_.empty() && needing_.empty() ? Outcome::success : Outcome::warning;
}

std::string TasksRun::summary() const {
    std::vector<std::string> sentences;
    if (done_ > 0)
        sentences.push_back(texts_.text("scheduled-action.tasks-done", {{"count", done_}}));
    if (!needing_.empty())
        sentences.push_back(texts_.text(
            "scheduled-action.tasks-need-helper",
            {{"count", needing_.size()}, {"tasks", fmt::format("{}", fmt::join(needing_, ", "))}}));
    sentences.insert(sentences.end(), failures_.begin(), failures_.end());
    if (wasCancelled_)
        sentences.push_back(left_.empty() ? texts_.text("scheduled-action.stopped") : left_);
    return fmt::format("{}", fmt::join(sentences, " "));
}

RunMetrics TasksRun::metrics() const {
    return {{RunMetric::itemsProcessed, static_cast<double>(done_)},
            {RunMetric::errors, static_cast<double>(failures_.size() + needing_.size())}};
}

RunDetails TasksRun::details() const {
    std::vector<std::string> lines = failures_;
    if (!left_.empty())
        lines.push_back(left_);
    return {{RunDetail::errors, joinList(lines)}, {RunDetail::output, output_}};
}

} // namespace vh::automation
