#pragma once

#include "Features/Activity/view/ActivityFilter.h"
#include "Features/Activity/view/ActivityRows.h"
#include "app/Background.h"

#include <QObject>
#include <QVariantList>
#include <QVariantMap>
#include <optional>

namespace vh {
struct UndoResult;
}

namespace vh::app {

class AppContext;

/// What was done: the runs that a filter lets through, the selected one with its files, and the way back from it.
class ActivityViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* runs READ runs CONSTANT)
    Q_PROPERTY(int runCount READ runCount NOTIFY runsChanged)
    Q_PROPERTY(QString totalsText READ totalsText NOTIFY runsChanged)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY runsChanged)
    Q_PROPERTY(QString period READ period WRITE setPeriod NOTIFY filterChanged)
    Q_PROPERTY(QString from READ from WRITE setFrom NOTIFY filterChanged)
    Q_PROPERTY(QString to READ to WRITE setTo NOTIFY filterChanged)
    Q_PROPERTY(QString toolID READ toolID WRITE setToolID NOTIFY filterChanged)
    Q_PROPERTY(QString outcome READ outcome WRITE setOutcome NOTIFY filterChanged)
    Q_PROPERTY(QString trigger READ trigger WRITE setTrigger NOTIFY filterChanged)
    Q_PROPERTY(QString computer READ computer WRITE setComputer NOTIFY filterChanged)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY filterChanged)
    Q_PROPERTY(bool isFiltered READ isFiltered NOTIFY filterChanged)
    /// {key, descending} of ActivityOrder.
    Q_PROPERTY(QVariantMap order READ order NOTIFY orderChanged)
    /// Of tools, triggers and computers, those that the log knows.
    Q_PROPERTY(QVariantList periodOptions READ periodOptions NOTIFY optionsChanged)
    Q_PROPERTY(QVariantList toolOptions READ toolOptions NOTIFY optionsChanged)
    Q_PROPERTY(QVariantList outcomeOptions READ outcomeOptions NOTIFY optionsChanged)
    Q_PROPERTY(QVariantList triggerOptions READ triggerOptions NOTIFY optionsChanged)
    Q_PROPERTY(QVariantList computerOptions READ computerOptions NOTIFY optionsChanged)
    /// Empty while none is selected.
    Q_PROPERTY(QVariantMap selectedRun READ selectedRun NOTIFY selectionChanged)
    Q_PROPERTY(QAbstractItemModel* files READ files CONSTANT)
    /// What the last undo or export came to.
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
public:
    explicit ActivityViewModel(AppContext& context);
    ~ActivityViewModel() override;

    QAbstractItemModel* runs() { return &runs_; }
    int runCount() const { return static_cast<int>(shown_.records.size()); }
    QString totalsText() const { return shown_.totalsText; }
    bool isLoading() const { return loading_.isBusy(); }

    QString period() const { return filter_.period; }
    QString from() const { return filter_.from; }
    QString to() const { return filter_.to; }
    QString toolID() const { return filter_.toolID; }
    QString outcome() const { return filter_.outcome; }
    QString trigger() const { return filter_.trigger; }
    QString computer() const { return filter_.computer; }
    QString text() const { return filter_.text; }
    void setPeriod(const QString& value) { change(filter_.period, value); }
    void setFrom(const QString& value) { change(filter_.from, value); }
    void setTo(const QString& value) { change(filter_.to, value); }
    void setToolID(const QString& value) { change(filter_.toolID, value); }
    void setOutcome(const QString& value) { change(filter_.outcome, value); }
    void setTrigger(const QString& value) { change(filter_.trigger, value); }
    void setComputer(const QString& value) { change(filter_.computer, value); }
    void setText(const QString& value) { change(filter_.text, value); }
    bool isFiltered() const { return filter_ != ActivityFilter(); }

    QVariantMap order() const;

    QVariantList periodOptions() const;
    QVariantList toolOptions() const { return shown_.tools; }
    QVariantList outcomeOptions() const;
    QVariantList triggerOptions() const { return shown_.triggers; }
    QVariantList computerOptions() const { return shown_.computers; }

    QVariantMap selectedRun() const { return selected_; }
    QAbstractItemModel* files() { return &files_; }
    QString message() const { return message_; }

    Q_INVOKABLE void select(const QString& runId);
    Q_INVOKABLE void clearSelection();
    Q_INVOKABLE void clearFilter();
    /// Orders the runs by this, or the other way round when they are so already.
    Q_INVOKABLE void orderBy(const QString& key);
    /// Puts back what the run moved to the Trash; `message` says what came of it.
    Q_INVOKABLE void undo(const QString& runId);
    /// A path in the folder, as a person writes it, that an export would not take from another file.
    Q_INVOKABLE QString exportPath(const QString& folder) const;
    /// Writes the runs shown as CSV to a path or a file's URL. False, and `message` says why, when it cannot.
    Q_INVOKABLE bool exportCsv(const QString& fileUrlOrPath);

signals:
    void runsChanged();
    void filterChanged();
    void orderChanged();
    void optionsChanged();
    void selectionChanged();
    void messageChanged();

private:
    struct SelectedRun;
    ActivityWords words() const;
    void change(QString& field, const QString& value);
    void reload();
    void load();
    void show(ActivityRows shown);
    void loadSelected();
    void showSelected(SelectedRun run);
    QString undoMessage(const UndoResult& undone) const;
    void say(const QString& message);

    AppContext& context_;
    ActivityFilter filter_;
    /// By "time", "run", "trigger", "files", "size" or "duration".
    ColumnOrder order_{QStringLiteral("time"), true};
    ActivityRows shown_;
    RecordListModel<RunRow> runs_;
    std::optional<Uuid> selectedId_;
    QVariantMap selected_;
    RecordListModel<FileRow> files_;
    QString message_;
    Background loading_;
    Background selecting_;
    Background undoing_;
};

} // namespace vh::app
