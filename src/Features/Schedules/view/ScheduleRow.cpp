#include "Features/Schedules/view/ScheduleRow.h"

#include "Core/Printable.h"
#include "Core/ScheduledTask.h"
#include "Features/Schedules/view/NextRunText.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/DayTexts.h"
#include "app/ToolLook.h"

#include <QStringList>
#include <fmt/format.h>

namespace vh::app {

namespace {

QString shown(const std::string& bytes) {
    return qtText(printable(bytes));
}

QString lineOf(const ScheduledTask& task, AppContext& context) {
    QStringList parts{actionTitle(context, task.actionID),
                      qtText(description(task.schedule, context.texts().current()))};
    if (task.company)
        parts << context.texts().text("schedules.set-by", {{"company", printable(*task.company)}});
    return parts.join(QStringLiteral(" · "));
}

QString nextOf(const ScheduledTask& task, AppContext& context) {
    if (!task.isEnabled)
        return context.texts().text("schedules.next.off");
    if (!task.nextRun)
        return context.texts().text("schedules.next.never");
    return nextRunText(context.texts().current(), context.calendar(), context.now(), *task.nextRun);
}

} // namespace

QString actionTitle(AppContext& context, std::string_view actionID) {
    if (actionID == flowAction)
        return context.texts().text("schedules.flow");
    if (fromRaw<ScheduledAction>(actionID))
        return context.texts().text(fmt::format("scheduled-action.{}.title", actionID));
    return shown(std::string(actionID));
}

ScheduleRow ScheduleRow::of(const ScheduledTask& task, bool isRunning, AppContext& context) {
    ScheduleRow row{.taskId = qtText(task.id.text()),
                    .title = shown(task.title),
                    .icon = toolIcon(task.toolID),
                    .line = lineOf(task, context),
                    .nextText = nextOf(task, context),
                    .isEnabled = task.isEnabled,
                    .isRunning = isRunning,
                    .isFlow = task.actionID == flowAction};
    if (task.lastRun)
        row.lastText =
            DayTexts(context.texts().current(), context.calendar(), context.now()).brief(*task.lastRun);
    if (task.lastOutcome) {
        row.outcome = qtText(rawValue(*task.lastOutcome));
        row.outcomeTitle = context.texts().text(fmt::format("outcome.{}", rawValue(*task.lastOutcome)));
    }
    if (const auto flow = task.payload.find("flow"); row.isFlow && flow != task.payload.end())
        row.flowId = shown(flow->second);
    return row;
}

std::span<const RecordListModel<ScheduleRow>::Role> ScheduleRow::roles() {
    using Model = RecordListModel<ScheduleRow>;
    static constexpr Model::Role list[] = {
        Model::role<&ScheduleRow::taskId>("taskId"),
        Model::role<&ScheduleRow::title>("title"),
        Model::role<&ScheduleRow::icon>("icon"),
        Model::role<&ScheduleRow::line>("line"),
        Model::role<&ScheduleRow::nextText>("nextText"),
        Model::role<&ScheduleRow::lastText>("lastText"),
        Model::role<&ScheduleRow::outcome>("outcome"),
        Model::role<&ScheduleRow::outcomeTitle>("outcomeTitle"),
        Model::role<&ScheduleRow::isEnabled>("isEnabled"),
        Model::role<&ScheduleRow::isRunning>("isRunning"),
        Model::role<&ScheduleRow::isFlow>("isFlow"),
        Model::role<&ScheduleRow::flowId>("flowId"),
    };
    return list;
}

} // namespace vh::app
