#include "Automation/MaintenanceJob.h"

#include "Core/RunLog.h"
#include "Core/Texts.h"
#include "HelperKit/HelperClientError.h"
#include "HelperKit/MaintenanceTexts.h"

namespace vh::automation {

MaintenanceJobResult runMaintenance(MaintenanceTask task, const helper::MaintenanceWork& work, RunLog& log,
                                    Trigger trigger, const Texts& texts, const JobControl& control) {
    const auto run = log.begin("maintenance", trigger);
    const auto fail = [&](const std::string& reason, std::string output = {}) {
        std::string summary = helper::failureSummary(task, work.system(), texts);
        if (!reason.empty())
            summary += " " + reason;
        return MaintenanceJobResult{
            run->finish(Outcome::failed, std::move(summary), {{RunMetric::errors, 1}}), std::move(output)};
    };
    try {
        control.report(-1, helper::taskTitle(task, work.system(), texts));
        if (const std::string reason = work.hindrance(task, texts); !reason.empty())
            return fail(reason);
        helper::MaintenanceRunner::Result result = work.run(task, control.cancel);
        if (!result.succeeded)
            return fail({}, std::move(result.output));
        return {run->finish(Outcome::success, helper::successSummary(task, work.system(), texts)),
                std::move(result.output)};
    } catch (const Cancelled&) {
        const std::string title = helper::taskTitle(task, work.system(), texts);
        return {run->finish(Outcome::cancelled, texts.text("maintenance.stopped", {{"title", title}})), {}};
    } catch (const helper::HelperClientError& error) {
        return fail(error.text(texts));
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}

} // namespace vh::automation
