#pragma once

#include "Core/ScheduledTask.h"

#include <QString>
#include <QVariantMap>

namespace vh::app {

class AppContext;

/// A scheduled task as a form takes it: title, action, kind ("daily", "weekly", "hourly"), time ("09:00"), weekday
/// ("1" is Sunday), hours, runIfMissed, and the payload under its own keys.
QVariantMap draftOf(const ScheduledTask& task);
/// What a form begins with.
QVariantMap newDraft(AppContext& context);

/// The fields of an action's payload: {key, kind: "pair", "tasks", "folder" or "flag", title, options: of a pair}. Where
/// a stored pair is chosen, its folders and flag are not asked for.
QVariantList payloadFields(AppContext& context, const QString& action);

/// Puts what the form says into a task. What is wrong with it, for people; nothing when all is well.
std::optional<QString> applyDraft(AppContext& context, const QVariantMap& draft, ScheduledTask& task);

} // namespace vh::app
