#include "Features/Optimize/work/OptimizeService.h"

#include "Automation/Automation.h"
#include "Automation/ScheduledActions.h"
#include "Core/ToolTexts.h"

#include <algorithm>

namespace vh::automation {

OptimizeService::OptimizeService(Automation& automation)
    : dependencies_(automation.dependencies()), runner_(dependencies_, automation.actions()),
      observing_(runner_.observe([this] { tell(); })) {
    automation.actions().provide(rawValue(ScheduledAction::optimize),
                                 [this](const ActionRequest& request, const JobControl& control) {
                                     return runner_.run(OptimizeProfile::load(dependencies_.defaults),
                                                        request.trigger, control, detailsOf(request));
                                 });
}

std::vector<RunningWork> OptimizeService::running() const {
    const OptimizeRunner::Snapshot state = runner_.snapshot();
    if (!state.isRunning)
        return {};
    RunningWork work{
        .key = key, .title = titleOf(ScheduledAction::optimize, dependencies_.texts()), .toolID = key};
    const auto ended = std::ranges::count_if(state.steps, [](const OptimizeRunner::Step& step) {
        return step.state != OptimizeRunner::StepState::pending &&
               step.state != OptimizeRunner::StepState::running;
    });
    if (!state.steps.empty())
        work.progress = double(ended) / double(state.steps.size());
    return {work};
}

} // namespace vh::automation
