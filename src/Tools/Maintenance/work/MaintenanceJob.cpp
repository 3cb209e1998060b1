#include "Tools/Maintenance/work/MaintenanceJob.h"

#include "Core/RunLog.h"
#include "Core/Texts.h"
#include "HelperKit/MaintenanceTexts.h"

namespace vh::automation {

MaintenanceJobResult runMaintenance(MaintenanceTask task, const helper::MaintenanceWork& work, RunLog& log,
                                    Trigger trigger, const Texts& texts, const JobControl& control) {
    using enum helper::MaintenanceEnd::Kind;
    const auto run = log.begin("maintenance", trigger);
    const std::string title = helper::taskTitle(task, work.system(), texts);
    control.report(-1, title);
    helper::MaintenanceEnd end = work.run(task, texts, control.cancel);
    const auto finish = [&](Outcome outcome, std::string summary, const RunMetrics& metrics = {}) {
        return MaintenanceJobResult{run->finish(outcome, std::move(summary), metrics), std::move(end.output)};
    };
    if (end.kind == done)
        return finish(Outcome::success, helper::successSummary(task, work.system(), texts));
    if (end.kind == stopped)
        return finish(Outcome::cancelled, texts.text("maintenance.stopped", {{"title", title}}));
    if (end.kind == leftToHelper)
        return finish(Outcome::cancelled, texts.text("maintenance.left-to-helper", {{"title", title}}));
    std::string summary = helper::failureSummary(task, work.system(), texts);
    if (!end.reason.empty())
        summary += " " + end.reason;
    return finish(Outcome::failed, std::move(summary), {{RunMetric::errors, 1}});
}

} // namespace vh::automation
