#include "Automation/ScheduledActions.h"

#include "Automation/ActionRun.h"
#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Core/SuiteModule.h"
#include "Core/ToolTexts.h"

#include <algorithm>

namespace vh::automation {

namespace {

constexpr std::string_view companySync = "company-sync";

Message toolTitle(std::string_view toolID, const Texts& texts) {
    if (toolID == companySync)
        return {"scheduled-action.company-sync.title", {}};
    const auto action = fromRaw<ScheduledAction>(toolID);
    return action ? titleMessage(*action) : Message::literal(toolName(texts, toolID));
}

RunRecord notThereYet(ActionRun& run) {
    return run.fail({"scheduled-action.not-there-yet", {{"tool", toolTitle(run.request.toolID, run.texts)}}});
}

RunRecord unknownAction(ActionRun& run) {
    return run.fail({"scheduled-action.unknown", {{"action", printable(run.request.actionID)}}});
}

} // namespace

RunDetails detailsOf(const ActionRequest& request) {
    RunDetails details = request.details;
    if (const auto flow = request.payload.find("flow"); flow != request.payload.end())
        details.emplace(RunDetail::flow, flow->second);
    return details;
}

ActionRun::ActionRun(const AutomationDependencies& w, const ActionRequest& r, const JobControl& c)
    : dependencies(w), request(r), control(c), texts(w.texts()), details(detailsOf(r)),
      run_(r.within ? w.runs.log.beginPart(r.toolID, r.trigger, details)
                    : w.runs.log.begin(r.toolID, r.trigger, details)) {}

RunRecord ActionRun::run(const std::function<RunRecord(ActionRun&)>& work) {
    try {
        return work(*this);
    } catch (const Cancelled&) {
        return finish(Outcome::cancelled, Message{"scheduled-action.stopped", {}});
    } catch (const std::exception& error) {
        return fail(messageOf(error));
    }
}

RunRecord ActionRun::finish(Outcome outcome, RunWords words, const RunMetrics& metrics,
                            const RunDetails& more) {
    return run_->finish(outcome, std::move(words), metrics, more);
}

RunRecord ActionRun::fail(const Message& why) {
    return finish(Outcome::failed, RunWords({why}, texts), {{RunMetric::errors, 1}});
}

RunRecord cleanWithModule(ActionRun& run) {
    const auto module = run.dependencies.module(run.request.actionID);
    if (!module)
        return notThereYet(run);
    run.control.report(-1, run.texts.text("scheduled-action.scanning"));
    const ScanReport report = module->scan(run.control).settled();
    if (report.items.empty())
        return run.finish(Outcome::success, Message{"scheduled-action.nothing-to-clean", {}});
    run.control.report(-1, run.texts.text("scheduled-action.moving-to-trash"));
    CleanStart start(run.request.trigger);
    start.details = run.details;
    start.isUnattended = true;
    start.within = run.request.within.get();
    return runClean(*module, report, CleanSelection::all(report, RemovalMethod::trash), start,
                    run.dependencies.runs, run.texts, run.control)
        .record;
}

void ScheduledActions::provide(std::string_view actionID, Run run) {
    provided_.insert_or_assign(std::string(actionID), std::move(run));
}

const ActionRow* ScheduledActions::rowOf(std::string_view actionID) const {
    for (const Offer* offer : dependencies_.offers)
        if (const auto row = std::ranges::find(offer->actions, actionID, &ActionRow::id);
            row != offer->actions.end())
            return &*row;
    return nullptr;
}

RunRecord ScheduledActions::run(const ScheduledTask& task, Trigger trigger, const JobControl& control) const {
    return runAction({.actionID = task.actionID,
                      .toolID = task.toolID,
                      .title = task.title,
                      .payload = task.payload,
                      .trigger = trigger},
                     control);
}

RunRecord ScheduledActions::run(ScheduledAction action, const ActionRequest& request,
                                const JobControl& control) const {
    return run(rawValue(action), request, control);
}

RunRecord ScheduledActions::run(std::string_view actionID, const ActionRequest& request,
                                const JobControl& control) const {
    ActionRequest named = request;
    named.actionID = actionID;
    return runAction(named, control);
}

RunRecord ScheduledActions::runAction(const ActionRequest& request, const JobControl& control) const {
    if (request.toolID != companySync) {
        if (const auto provided = provided_.find(request.actionID); provided != provided_.end())
            return provided->second(request, control);
        if (const ActionRow* row = rowOf(request.actionID))
            return ActionRun(dependencies_, request, control).run(row->run);
        if (!fromRaw<ScheduledAction>(request.actionID))
            return ActionRun(dependencies_, request, control).run(unknownAction);
    }
    return ActionRun(dependencies_, request, control).run(notThereYet);
}

bool ScheduledActions::isThere(ScheduledAction action) const {
    const std::string_view id = rawValue(action);
    const ActionRow* row = rowOf(id);
    return provided_.contains(id) || (row && (!row->isThere || row->isThere(dependencies_)));
}

std::span<const PayloadField> ScheduledActions::fields(std::string_view actionID) const {
    const ActionRow* row = rowOf(actionID);
    return row ? row->fields : std::span<const PayloadField>();
}

} // namespace vh::automation
