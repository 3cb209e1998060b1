#pragma once

#include "app/RecordListModel.h"

#include <QString>

namespace vh {
struct ScheduledTask;
}

namespace vh::app {

class AppContext;

/// A scheduled task as the list shows it.
struct ScheduleRow {
    QString taskId;
    QString title;
    QString icon;
    QString line; ///< tool, times and who set it
    QString nextText;
    QString lastText; ///< empty before the first run
    QString outcome;
    QString outcomeTitle;
    bool isEnabled = false;
    bool isRunning = false;
    bool isFlow = false;
    QString flowId; ///< of a task that mirrors a flow

    static ScheduleRow of(const ScheduledTask& task, bool isRunning, AppContext& context);
    static std::span<const RecordListModel<ScheduleRow>::Role> roles();
    const QString& key() const { return taskId; }
    bool operator==(const ScheduleRow&) const = default;
};

/// "Clean caches", or the identifier of an action that is not known.
QString actionTitle(AppContext& context, std::string_view actionID);

} // namespace vh::app
