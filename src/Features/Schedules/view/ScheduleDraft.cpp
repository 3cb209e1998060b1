#include "Features/Schedules/view/ScheduleDraft.h"

#include "Automation/Automation.h"
#include "Automation/ScheduledActions.h"
#include "Core/Printable.h"
#include "Features/Schedules/view/ScheduleRow.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/Options.h"
#include "app/PathText.h"
#include "app/Session.h"

#include <QRegularExpression>
#include <fmt/format.h>

namespace vh::app {

namespace {

using automation::FieldKind;
using automation::PayloadField;

constexpr const char* flagSet = "true";
constexpr int defaultHours = 6;

std::span<const PayloadField> fieldsOf(AppContext& context, const std::string& action) {
    return context.automation().actions().fields(action);
}

std::string keyOf(const PayloadField& field) {
    return std::string(field.key);
}

QString nameOf(FieldKind kind) {
    switch (kind) {
    case FieldKind::folder:
        return QStringLiteral("folder");
    case FieldKind::flag:
        return QStringLiteral("flag");
    case FieldKind::choice:
        return QStringLiteral("choice");
    case FieldKind::several:
        break;
    }
    return QStringLiteral("several");
}

QString timeText(int hour, int minute) {
    return QStringLiteral("%1:%2").arg(hour, 2, 10, QLatin1Char('0')).arg(minute, 2, 10, QLatin1Char('0'));
}

/// A field of a payload as the form takes it.
QVariant shown(FieldKind kind, const std::string& text) {
    switch (kind) {
    case FieldKind::flag:
        return text == flagSet;
    case FieldKind::several:
        return qtText(text).split(QLatin1Char(','), Qt::SkipEmptyParts);
    case FieldKind::folder:
    case FieldKind::choice:
        break;
    }
    return qtText(text);
}

std::vector<automation::FieldChoice> choicesOf(AppContext& context, const PayloadField& field) {
    return field.choices ? field.choices(context.session().folders(), context.texts().current())
                         : std::vector<automation::FieldChoice>();
}

QVariantList optionsOf(AppContext& context, const PayloadField& field) {
    QVariantList options;
    if (!field.noneKey.empty())
        options << option({}, context.texts().text(field.noneKey));
    for (const automation::FieldChoice& each : choicesOf(context, field))
        options << option(qtText(each.value), qtText(each.title));
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

QStringList knownOf(const QStringList& values, const std::vector<automation::FieldChoice>& choices) {
    QStringList known;
    for (const automation::FieldChoice& each : choices)
        if (values.contains(qtText(each.value)))
            known << qtText(each.value);
    return known;
}

/// Puts one field into the payload; the key of what is wrong with it, nothing when all is well.
std::string_view apply(const PayloadField& field, const QVariant& value, ScheduledTask& task,
                       AppContext& context) {
    const std::string key = keyOf(field);
    task.payload.erase(key);
    if (task.payload.contains(std::string(field.unlessGiven)))
        return {};
    std::string text;
    switch (field.kind) {
    case FieldKind::flag:
        text = value.toBool() ? flagSet : "";
        break;
    case FieldKind::choice:
        text = value.toString().toStdString();
        break;
    case FieldKind::folder:
        text = chosenPath(value.toString(), context.session().folders().home);
        break;
    case FieldKind::several:
        text = knownOf(value.toStringList(), choicesOf(context, field)).join(QLatin1Char(',')).toStdString();
        break;
    }
    if (text.empty())
        return field.missingKey;
    task.payload[key] = text;
    return {};
}

} // namespace

QVariantMap draftOf(AppContext& context, const ScheduledTask& task) {
    QVariantMap draft{{QStringLiteral("title"), qtText(task.title)},
                      {QStringLiteral("action"), qtText(task.actionID)},
                      {QStringLiteral("runIfMissed"), task.runIfMissed}};
    for (const ScheduledAction action : allCases<ScheduledAction>())
        for (const PayloadField& field : fieldsOf(context, std::string(rawValue(action)))) {
            const auto value = task.payload.find(keyOf(field));
            if (value != task.payload.end())
                draft[qtText(field.key)] = shown(field.kind, value->second);
            else if (!draft.contains(qtText(field.key)))
                draft[qtText(field.key)] = shown(field.kind, "");
        }
    show(draft, task.schedule);
    return draft;
}

QVariantMap newDraft(AppContext& context) {
    ScheduledTask task;
    task.actionID = rawValue(ScheduledAction::cleanStorage);
    task.runIfMissed = true;
    task.schedule = DailySchedule{9, 0};
    QVariantMap draft = draftOf(context, task);
    for (const ScheduledAction action : allCases<ScheduledAction>())
        for (const PayloadField& field : fieldsOf(context, std::string(rawValue(action))))
            // What was set up is meant more often than not.
            if (const auto choices = choicesOf(context, field);
                field.kind == FieldKind::choice && !choices.empty())
                draft[qtText(field.key)] = qtText(choices.front().value);
    return draft;
}

QVariantList payloadFields(AppContext& context, const QString& action) {
    QVariantList list;
    for (const PayloadField& field : fieldsOf(context, action.toStdString()))
        list << QVariantMap{
            {QStringLiteral("key"), qtText(field.key)},
            {QStringLiteral("kind"), nameOf(field.kind)},
            {QStringLiteral("options"), optionsOf(context, field)},
            {QStringLiteral("unlessGiven"), qtText(field.unlessGiven)},
            {QStringLiteral("editor"), qtText(field.editor)},
            {QStringLiteral("title"), context.texts().text(fmt::format("schedules.payload.{}", field.key))},
        };
    return list;
}

std::optional<QString> applyDraft(AppContext& context, const QVariantMap& draft, ScheduledTask& task) {
    const std::string actionID = draft[QStringLiteral("action")].toString().toStdString();
    if (actionID != task.actionID)
        task.payload.clear();
    task.actionID = task.toolID = actionID;
    for (const PayloadField& field : fieldsOf(context, actionID))
        if (const auto fault = apply(field, draft[qtText(field.key)], task, context); !fault.empty())
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
