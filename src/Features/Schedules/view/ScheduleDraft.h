#pragma once

#include "Core/ScheduledTask.h"

#include <QString>
#include <QVariantMap>

namespace vh::app {

class AppContext;

/// A scheduled task as a form takes it: title, action, kind ("daily", "weekly", "hourly"), time ("09:00"), weekday
/// ("1" is Sunday), hours, runIfMissed, and the payload under its own keys.
QVariantMap draftOf(AppContext& context, const ScheduledTask& task);
/// What a form begins with.
QVariantMap newDraft(AppContext& context);

/// The fields of an action's payload: {key, kind: "choice", "several", "folder" or "flag", title, options,
/// unlessGiven: the field that stands for it, editor: of several}.
QVariantList payloadFields(AppContext& context, const QString& action);

/// Puts what the form says into a task. What is wrong with it, for people; nothing when all is well.
std::optional<QString> applyDraft(AppContext& context, const QVariantMap& draft, ScheduledTask& task);

} // namespace vh::app
