#include "Features/Flows/view/FlowEditorViewModel.h"

#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "Features/Flows/view/FlowRunValues.h"
#include "Features/Flows/work/FlowsService.h"
#include "Features/Flows/work/NodesRunner.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/Session.h"

#include <utility>

/// The editor's runs: what one would do, one that goes on, and those of the past.
namespace vh::app {

using namespace flows;

bool FlowEditorViewModel::isRunning() const {
    return document_ && service_.runner().isRunning(flow().id);
}

QString FlowEditorViewModel::shownRun() const {
    return shownRun_ ? qtText(shownRun_->text()) : QString();
}

QVariantList FlowEditorViewModel::neededValues() const {
    return document_ && !isBlocked() ? app::neededValues(flow(), words()) : QVariantList();
}

void FlowEditorViewModel::run(const QVariantMap& values) {
    automation::FlowStart how;
    how.values = runValues(values, context_.session().folders().home);
    start(how);
}

void FlowEditorViewModel::resume(const QString& runId) {
    automation::FlowStart how;
    how.resume = Uuid::parse(runId.toStdString());
    if (how.resume)
        start(how);
}

void FlowEditorViewModel::start(const automation::FlowStart& how) {
    say({});
    if (!document_ || !save())
        return;
    auto& runner = service_.runner();
    if (const auto refusal = runner.refusal(flow())) {
        // Where nothing is selected stands what is wrong.
        selectId(std::nullopt);
        say(qtText(*refusal));
        return;
    }
    if (std::exchange(shownRun_, std::nullopt))
        refreshRuns();
    state_.plan.clear();
    put(plan_, {}, &FlowEditorViewModel::planChanged);
    runner.start(flow(), how);
    followRunner(flow().id);
}

void FlowEditorViewModel::stop() {
    if (document_)
        service_.runner().stop(flow().id);
}

void FlowEditorViewModel::toggleDryRun() {
    if (!document_)
        return;
    const FlowWords said = words();
    QVariantList plan;
    state_.plan.clear();
    if (!isPlanned())
        for (const auto& line : service_.runner().plan(flow(), {})) {
            state_.plan[line.node] = line.text;
            const FlowNode* node = flow().node(line.node);
            plan << QVariantMap{{QStringLiteral("node"), qtText(line.node.text())},
                                {QStringLiteral("title"), node ? said.title(*node) : QString()},
                                {QStringLiteral("text"), qtText(printable(line.text))}};
        }
    put(plan_, plan, &FlowEditorViewModel::planChanged);
    if (isPlanned())
        selectId(std::nullopt);
    refreshCanvas();
}

void FlowEditorViewModel::showRun(const QString& runId) {
    const auto id = Uuid::parse(runId.toStdString());
    shownRun_ = id == shownRun_ ? std::nullopt : id;
    readState();
    refreshCanvas();
    refreshInspector();
    refreshRuns();
    emit stateChanged();
}

} // namespace vh::app
