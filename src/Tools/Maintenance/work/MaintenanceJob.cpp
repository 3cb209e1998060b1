#include "Tools/Maintenance/work/MaintenanceJob.h"

#include "Core/RunLog.h"
#include "Core/Texts.h"
#include "HelperKit/MaintenanceTexts.h"

namespace vh::automation {

MaintenanceJobResult runMaintenance(MaintenanceTask task, const helper::MaintenanceWork& work, RunLog& log,
                                    Trigger trigger, const Texts& texts, const JobControl& control) {
    using enum helper::MaintenanceEnd::Kind;
    const auto run = log.begin("maintenance", trigger);
    const helper::MaintenanceSystem system = work.system();
    const Message title = helper::titleMessage(task, system);
    control.report(-1, worded(title, texts));
    helper::MaintenanceEnd end = work.run(task, control.cancel);
    const auto finish = [&](Outcome outcome, const Messages& sentences, const RunMetrics& metrics = {}) {
        return MaintenanceJobResult{run->finish(outcome, {sentences, texts}, metrics), std::move(end.output)};
    };
    if (end.kind == done)
        return finish(Outcome::success, {helper::successMessage(task, system)});
    if (end.kind == stopped)
        return finish(Outcome::cancelled, {{"maintenance.stopped", {{"title", title}}}});
    if (end.kind == leftToHelper)
        return finish(Outcome::cancelled, {{"maintenance.left-to-helper", {{"title", title}}}});
    Messages sentences{helper::failureMessage(task, system)};
    if (end.reason)
        sentences.push_back(*end.reason);
    return finish(Outcome::failed, sentences, {{RunMetric::errors, 1}});
}

} // namespace vh::automation
