#include "Automation/TasksRun.h"

#include "Core/Printable.h"
#include "HelperKit/HelperClient.h"
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

bool needsHelper(const helper::MaintenanceWork& work, MaintenanceTask task, const Texts& texts) {
    return work.planOf(task).isPossible() && !work.hindrance(task, texts).empty();
}

void TasksRun::run(const std::vector<MaintenanceTask>& tasks) {
    for (size_t i = 0; i < tasks.size() && !wasCancelled_; ++i) {
        control_.report(static_cast<double>(i) / static_cast<double>(tasks.size()),
                        taskTitle(tasks[i], work_.system(), texts_));
        try {
            control_.throwIfCancelled();
            runOne(tasks[i]);
        } catch (const Cancelled&) {
            wasCancelled_ = true;
        }
    }
}

void TasksRun::runOne(MaintenanceTask task) {
    const std::string title = taskTitle(task, work_.system(), texts_);
    if (needsHelper(work_, task, texts_)) {
        needing_.push_back(title);
        return;
    }
    if (const std::string hindrance = work_.hindrance(task, texts_); !hindrance.empty())
        return fail(title, hindrance);
    try {
        const auto result = work_.run(task, control_.cancel);
        if (!result.output.empty())
            output_ += fmt::format("{}{}\n{}", output_.empty() ? "" : "\n", title, lastOf(result.output));
        if (result.succeeded)
            ++done_;
        else
            fail(title, failureSummary(task, work_.system(), texts_));
    } catch (const helper::HelperClientError& error) {
        fail(title, error.text(texts_));
    }
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
        sentences.push_back(texts_.text("scheduled-action.stopped"));
    return fmt::format("{}", fmt::join(sentences, " "));
}

RunMetrics TasksRun::metrics() const {
    return {{RunMetric::itemsProcessed, static_cast<double>(done_)},
            {RunMetric::errors, static_cast<double>(failures_.size() + needing_.size())}};
}

RunDetails TasksRun::details() const {
    return {{RunDetail::errors, joinList(failures_)}, {RunDetail::output, output_}};
}

} // namespace vh::automation
