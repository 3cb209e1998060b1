#include "Features/Schedules/view/ScheduleDraft.h"

#include "Core/Printable.h"
#include "Features/Schedules/view/ScheduleRow.h"
#include "HelperKit/TaskList.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/PathText.h"
#include "app/Session.h"

#include <QRegularExpression>
#include <fmt/format.h>

namespace vh::app {

namespace {

enum class FieldKind { tasks, folder, flag, pair };

struct PayloadField {
    ScheduledAction action;
    const char* key;
    FieldKind kind;
};

constexpr PayloadField fields[] = {
    {ScheduledAction::maintenance, "tasks", FieldKind::tasks},
    {ScheduledAction::folderSync, "pair", FieldKind::pair},
    {ScheduledAction::folderSync, "source", FieldKind::folder},
    {ScheduledAction::folderSync, "destination", FieldKind::folder},
    {ScheduledAction::folderSync, "delete", FieldKind::flag},
};

constexpr const char* flagSet = "true";
constexpr int defaultHours = 6;

std::vector<sync::SyncPair> storedPairs(AppContext& context) {
    return sync::SyncPairStore(sync::SyncPairStore::fileIn(context.session().folders())).load();
}

QString nameOf(FieldKind kind) {
    switch (kind) {
    case FieldKind::folder:
        return QStringLiteral("folder");
    case FieldKind::flag:
        return QStringLiteral("flag");
    case FieldKind::pair:
        return QStringLiteral("pair");
    case FieldKind::tasks:
        break;
    }
    return QStringLiteral("tasks");
}

QString timeText(int hour, int minute) {
    return QStringLiteral("%1:%2").arg(hour, 2, 10, QLatin1Char('0')).arg(minute, 2, 10, QLatin1Char('0'));
}

/// A field of a payload as the form takes it.
QVariant shown(FieldKind kind, const std::string& text) {
    switch (kind) {
    case FieldKind::flag:
        return text == flagSet;
    case FieldKind::tasks:
        return qtText(text).split(QLatin1Char(','), Qt::SkipEmptyParts);
    case FieldKind::folder:
    case FieldKind::pair:
        break;
    }
    return qtText(text);
}

/// The stored pairs, after the choice of two folders of the schedule's own.
QVariantList pairOptions(AppContext& context) {
    const auto option = [](const QString& value, const QString& title) {
        return QVariantMap{{QStringLiteral("value"), value}, {QStringLiteral("title"), title}};
    };
    QVariantList options{option({}, context.texts().text("schedules.payload.own-folders"))};
    for (const sync::SyncPair& each : storedPairs(context))
        options << option(qtText(each.id.text()), qtText(printable(each.title())));
    return options;
}

void show(QVariantMap& draft, const Schedule& schedule) {
    draft[QStringLiteral("time")] = timeText(9, 0);
    draft[QStringLiteral("weekday")] = QStringLiteral("2");
    draft[QStringLiteral("hours")] = QString::number(defaultHours);
    if (const auto* daily = std::get_if<DailySchedule>(&schedule)) {
        draft[QStringLiteral("kind")] = QStringLiteral("daily");
        draft[QStringLiteral("time")] = timeText(daily->hour, daily->minute);
    } else if (const auto* weekly = std::get_if<WeeklySchedule>(&schedule)) {
        draft[QStringLiteral("kind")] = QStringLiteral("weekly");
        draft[QStringLiteral("time")] = timeText(weekly->hour, weekly->minute);
        draft[QStringLiteral("weekday")] = QString::number(weekly->weekday);
    } else if (const auto* hourly = std::get_if<HourlySchedule>(&schedule)) {
        draft[QStringLiteral("kind")] = QStringLiteral("hourly");
        draft[QStringLiteral("hours")] = QString::number(hourly->hours);
    }
}

/// "9", "9:30", "09.30", "930", "9 h 30"; nothing when it is no time of day.
std::optional<DailySchedule> timeOf(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^(\\d{1,2})(?:\\s*[:.h]\\s*(\\d{2})?|(\\d{2}))?$"));
    const auto match = form.match(text.trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    const DailySchedule time{match.captured(1).toInt(), (match.captured(2) + match.captured(3)).toInt()};
    return faultOf(time) ? std::nullopt : std::optional(time);
}

/// What the form says, or the key of what is wrong with it.
std::variant<Schedule, const char*> scheduleOf(const QVariantMap& draft) {
    const QString kind = draft[QStringLiteral("kind")].toString();
    if (kind == QLatin1String("hourly")) {
        bool isNumber = false;
        const int hours = draft[QStringLiteral("hours")].toString().trimmed().toInt(&isNumber);
        if (!isNumber || hours < 1 || hours > 24 * 365)
            return "schedule.fault.hours";
        return Schedule(HourlySchedule{hours});
    }
    const auto time = timeOf(draft[QStringLiteral("time")].toString());
    if (!time)
        return "schedule.fault.time";
    if (kind == QLatin1String("weekly"))
        return Schedule(WeeklySchedule{draft[QStringLiteral("weekday")].toInt(), time->hour, time->minute});
    return Schedule(*time);
}

/// Whether a stored pair says it already.
bool isSaidByPair(const PayloadField& field, const ScheduledTask& task) {
    return field.action == ScheduledAction::folderSync && field.kind != FieldKind::pair &&
           task.payload.contains("pair");
}

/// Puts one field into the payload; the key of what is wrong with it, nothing when all is well.
const char* apply(const PayloadField& field, const QVariant& value, ScheduledTask& task,
                  AppContext& context) {
    task.payload.erase(field.key);
    if (isSaidByPair(field, task))
        return nullptr;
    switch (field.kind) {
    case FieldKind::flag:
        if (value.toBool())
            task.payload[field.key] = flagSet;
        return nullptr;
    case FieldKind::pair:
        if (const QString id = value.toString(); !id.isEmpty())
            task.payload[field.key] = id.toStdString();
        return nullptr;
    case FieldKind::folder:
        task.payload[field.key] = chosenPath(value.toString(), context.session().folders().home);
        break;
    case FieldKind::tasks:
        task.payload[field.key] = automation::taskList(
            automation::tasksOf(value.toStringList().join(QLatin1Char(',')).toStdString()));
        break;
    }
    if (!task.payload[field.key].empty())
        return nullptr;
    return field.kind == FieldKind::tasks ? "schedules.fault.tasks" : "schedules.fault.folder";
}

} // namespace

QVariantMap draftOf(const ScheduledTask& task) {
    QVariantMap draft{{QStringLiteral("title"), qtText(task.title)},
                      {QStringLiteral("action"), qtText(task.actionID)},
                      {QStringLiteral("runIfMissed"), task.runIfMissed}};
    for (const PayloadField& field : fields) {
        const auto value = task.payload.find(field.key);
        const std::string text = value == task.payload.end() ? "" : value->second;
        draft[qtText(field.key)] = shown(field.kind, text);
    }
    show(draft, task.schedule);
    return draft;
}

QVariantMap newDraft(AppContext& context) {
    ScheduledTask task;
    task.actionID = rawValue(ScheduledAction::cleanStorage);
    task.runIfMissed = true;
    task.schedule = DailySchedule{9, 0};
    QVariantMap draft = draftOf(task);
    if (const auto pairs = storedPairs(context);
        !pairs.empty()) // what was set up is meant more often than not
        draft[QStringLiteral("pair")] = qtText(pairs.front().id.text());
    return draft;
}

QVariantList payloadFields(AppContext& context, const QString& action) {
    QVariantList list;
    const auto known = fromRaw<ScheduledAction>(action.toStdString());
    for (const PayloadField& field : fields)
        if (known == field.action)
            list << QVariantMap{
                {QStringLiteral("key"), qtText(field.key)},
                {QStringLiteral("kind"), nameOf(field.kind)},
                {QStringLiteral("options"),
                 field.kind == FieldKind::pair ? pairOptions(context) : QVariantList()},
                {QStringLiteral("title"),
                 context.texts().text(fmt::format("schedules.payload.{}", field.key))},
            };
    return list;
}

std::optional<QString> applyDraft(AppContext& context, const QVariantMap& draft, ScheduledTask& task) {
    const std::string actionID = draft[QStringLiteral("action")].toString().toStdString();
    if (actionID != task.actionID)
        task.payload.clear();
    task.actionID = task.toolID = actionID;
    for (const PayloadField& field : fields)
        if (fromRaw<ScheduledAction>(actionID) == field.action)
            if (const char* fault = apply(field, draft[qtText(field.key)], task, context))
                return context.texts().text(fault);
    const auto schedule = scheduleOf(draft);
    if (const auto* fault = std::get_if<const char*>(&schedule))
        return context.texts().text(*fault);
    task.schedule = std::get<Schedule>(schedule);
    const QString title = draft[QStringLiteral("title")].toString().trimmed();
    task.title = (title.isEmpty() ? actionTitle(context, actionID) : title).toStdString();
    task.runIfMissed = draft[QStringLiteral("runIfMissed")].toBool();
    return std::nullopt;
}

} // namespace vh::app
