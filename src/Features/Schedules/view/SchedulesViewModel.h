#pragma once

#include "Core/ScheduledTask.h"
#include "Features/Schedules/view/ScheduleRow.h"
#include "app/ColumnOrder.h"
#include "app/MainThreadDispatcher.h"

#include <QObject>
#include <QTimer>
#include <QVariantList>
#include <memory>
#include <optional>
#include <vector>

namespace vh {
class ScheduleStore;
}
namespace vh::automation {
class Scheduler;
}

namespace vh::app {

class AutomationLife;

/// The page of what runs by itself. Follows the file also when another process changes it.
class SchedulesViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* tasks READ tasks CONSTANT)
    /// {key, descending} of the column by which they are ordered: "task", "last" or "next"; no key at first, for the order
    /// in which they were made.
    Q_PROPERTY(QVariantMap order READ order NOTIFY tasksChanged)
    Q_PROPERTY(int taskCount READ taskCount NOTIFY tasksChanged)
    /// How many there are, and how many of them are on.
    Q_PROPERTY(QString countText READ countText NOTIFY tasksChanged)
    /// The roles of the task that is chosen; empty for none.
    Q_PROPERTY(QVariantMap selected READ selected NOTIFY tasksChanged)
    /// The task that this process runs, and what it is doing; both empty while none runs.
    Q_PROPERTY(QString runningTitle READ runningTitle NOTIFY tasksChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY tasksChanged)
    /// What became of the last one.
    Q_PROPERTY(QString message READ message NOTIFY tasksChanged)
    /// When schedules run, and whether this window sees to it.
    Q_PROPERTY(QString leadText READ leadText NOTIFY leadChanged)
    Q_PROPERTY(QVariantList weekdayOptions READ weekdayOptions NOTIFY languageChanged)
public:
    SchedulesViewModel(AppContext& context, AutomationLife& life);

    QAbstractItemModel* tasks() { return &rows_; }
    QVariantMap order() const { return order_.map(); }
    int taskCount() const { return rows_.rowCount(); }
    QString countText() const;
    QVariantMap selected() const;
    QString runningTitle() const;
    QString progressText() const;
    QString message() const;
    QString leadText() const;
    QVariantList weekdayOptions() const;

    Q_INVOKABLE void orderBy(const QString& key);
    Q_INVOKABLE void select(const QString& id);
    Q_INVOKABLE void runNow(const QString& id);
    Q_INVOKABLE void stop();
    Q_INVOKABLE void setEnabled(const QString& id, bool value);
    Q_INVOKABLE void remove(const QString& id);
    /// Brings back what was removed last.
    Q_INVOKABLE void undoRemove();

    /// What can be started; `present` is offered too though its tool be missing.
    Q_INVOKABLE QVariantList actionOptions(const QString& present) const;
    Q_INVOKABLE QVariantList payloadFields(const QString& action) const;
    /// For the form: of a task, or of a new one for an empty identifier.
    Q_INVOKABLE QVariantMap draft(const QString& id) const;
    /// Stores the form. Why it could not be, for people; empty when it was.
    Q_INVOKABLE QString save(const QString& id, const QVariantMap& draft);

    /// Looks again at once.
    Q_INVOKABLE void refresh();

signals:
    void tasksChanged();
    void leadChanged();
    void languageChanged();
    /// Something for the person, in passing.
    void said(const QString& text);

private:
    ScheduleStore& store() const;
    automation::Scheduler& scheduler() const;

    std::vector<ScheduledTask> orderedTasks() const;

    AppContext& context_;
    AutomationLife& life_;
    RecordListModel<ScheduleRow> rows_;
    ColumnOrder order_;
    QString selectedId_;
    std::optional<ScheduledTask> removed_;
    QTimer timer_;
    MainThreadDispatcher dispatcher_;
    std::shared_ptr<void> observingStore_;
    std::shared_ptr<void> observingScheduler_;
};

} // namespace vh::app
