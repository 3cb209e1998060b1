#include "app/AutomationLife.h"

#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "Core/ScheduleStore.h"
#include "Features/Flows/work/NodesRunner.h"
#include "Features/Optimize/work/OptimizeRunner.h"
#include "Features/Schedules/work/Scheduler.h"
#include "HelperKit/HelperClient.h"
#include "Tools/FolderSync/work/SyncRunner.h"
#include "app/ActivityCenter.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/Session.h"

#include <algorithm>

namespace vh::app {

AutomationLife::AutomationLife(AppContext& context) : context_(context) {
    connect(&context_.activity(), &ActivityCenter::changed, this, &AutomationLife::changed);
}

AutomationLife::~AutomationLife() {
    if (!automation_)
        return;
    automation_->runner().setOnActivity({});
    automation_->setOnLeading({});
}

automation::Automation& AutomationLife::automation() {
    if (automation_)
        return *automation_;
    automation_ = &context_.automation();
    observingScheduler_ = automation_->scheduler().observe([this] { tellScheduler(); });
    observingOptimize_ = automation_->optimize().observe([this] { tellOptimize(); });
    observingSync_ = automation_->sync().observe([this] { tellSync(); });
    automation_->runner().setOnActivity([this](const automation::NodesRunner::Activity& activity) {
        context_.activity().report({.key = qtText(activity.key),
                                    .active = activity.active,
                                    .title = qtText(printable(activity.title)),
                                    .toolID = flowTool,
                                    .progress = activity.fraction});
    });
    automation_->setOnLeading([this] { emit changed(); });
    return *automation_;
}

void AutomationLife::start(const QString& link) {
    if (std::exchange(started_, true))
        return;
    renewHelper();
    try {
        automation().attach();
        automation().lead();
    } catch (const std::exception& error) {
        emit said(qtText(printable(error.what())));
    }
    emit changed();
    if (!link.isEmpty())
        openLink(link);
}

void AutomationLife::renewHelper() {
    renewing_.run([&helper = context_.session().helper(), texts = context_.texts().current()](
                      const Background::Task&) { helper.refreshRegistrationAfterUpdate(texts); },
                  [](const std::future<void>&) {}); // what is wrong stands on the helper's page
}

bool AutomationLife::isLeading() const {
    return started_ && automation_->isLeading();
}

void AutomationLife::openLink(const QString& url) {
    start();
    if (const auto refusal = automation().openLink(url.toStdString()))
        emit said(qtText(printable(*refusal)));
}

QStringList AutomationLife::running() const {
    QStringList titles;
    for (const ActivityCenter::Job& job : context_.activity().running())
        if (job.id == schedulerKey || job.toolID == optimizeKey || job.toolID == flowTool ||
            job.toolID == maintenanceTool || job.id == syncKey || job.toolID == copyTool)
            titles << job.title;
    titles.removeDuplicates(); // a task that starts the one-button run is mostly called the same
    return titles;
}

void AutomationLife::stop() {
    automation().scheduler().stopRunning();
    automation().runner().stopAll();
    automation().optimize().requestCancel();
    automation().sync().stop();
}

void AutomationLife::tellScheduler() {
    const auto& id = automation_->scheduler().runningTaskID();
    const auto task = id ? automation_->schedules().task(*id) : std::nullopt;
    if (!id) {
        context_.activity().end(schedulerKey);
        return;
    }
    ActivityReport report{.key = schedulerKey};
    if (task) { // one that was removed while it runs keeps the name it had
        report.title = qtText(printable(task->title));
        report.toolID = qtText(task->toolID);
        context_.activity().report(report);
    }
}

void AutomationLife::tellOptimize() {
    const automation::OptimizeRunner::Snapshot state = automation_->optimize().snapshot();
    if (!state.isRunning) {
        context_.activity().end(optimizeKey);
        return;
    }
    const auto ended = std::ranges::count_if(state.steps, [](const automation::OptimizeRunner::Step& step) {
        using State = automation::OptimizeRunner::StepState;
        return step.state != State::pending && step.state != State::running;
    });
    ActivityReport report{.key = optimizeKey};
    report.title = qtText(titleOf(ScheduledAction::optimize, context_.texts().current()));
    report.toolID = optimizeKey;
    if (!state.steps.empty())
        report.progress = double(ended) / double(state.steps.size());
    context_.activity().report(report);
}

void AutomationLife::tellSync() {
    const auto& running = automation_->sync().running();
    if (!running) {
        context_.activity().end(syncKey);
        return;
    }
    ActivityReport report{.key = syncKey};
    report.title = qtText(printable(running->title));
    report.toolID = syncKey;
    if (running->total > 0)
        report.progress = running->fraction;
    context_.activity().report(report);
}

} // namespace vh::app
