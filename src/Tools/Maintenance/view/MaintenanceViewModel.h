#pragma once

#include "Core/Date.h"
#include "Core/MaintenanceTask.h"
#include "Core/RunRecord.h"
#include "HelperKit/MaintenanceWork.h"
#include "app/Background.h"

#include <QObject>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>
#include <map>
#include <optional>
#include <string>

namespace vh::automation {
struct MaintenanceJobResult;
}

namespace vh::app {

class AppContext;

/// The chores of the system: which there are, the one that runs, and what the last one came to.
class MaintenanceViewModel : public QObject {
    Q_OBJECT
    /// {value, title, detail, requiresRoot, isSlow, missing}: `missing` says why this machine cannot do it; those last.
    Q_PROPERTY(QVariantList tasks READ tasks NOTIFY tasksChanged)
    /// The task that runs, by value and by title; empty at rest.
    Q_PROPERTY(QString running READ running NOTIFY runChanged)
    Q_PROPERTY(QString runningTitle READ runningTitle NOTIFY runChanged)
    /// It was asked to stop and has not ended yet.
    Q_PROPERTY(bool isStopping READ isStopping NOTIFY runChanged)
    Q_PROPERTY(QString elapsedText READ elapsedText NOTIFY elapsedChanged)
    /// {taskTitle, summary, outcome, outcomeTitle, timeText}; empty before the first.
    Q_PROPERTY(QVariantMap lastRun READ lastRun NOTIFY runChanged)
    /// What the last task printed.
    Q_PROPERTY(QString log READ log NOTIFY runChanged)
    /// Why the last one could not be run; empty while all is well.
    Q_PROPERTY(QString notice READ notice NOTIFY runChanged)
    /// {outcome, text} of the tasks that were run from here, by value.
    Q_PROPERTY(QVariantMap results READ results NOTIFY runChanged)
    /// Tasks that need root can run. True until it is known.
    Q_PROPERTY(bool helperIsReady READ helperIsReady NOTIFY helperChanged)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY helperChanged)
public:
    MaintenanceViewModel(AppContext& context, helper::MaintenanceWork work);
    ~MaintenanceViewModel() override;

    QVariantList tasks() const;
    QString running() const;
    QString runningTitle() const;
    bool isStopping() const { return stopping_; }
    QString elapsedText() const;
    QVariantMap lastRun() const;
    QString log() const { return log_; }
    QString notice() const { return notice_; }
    QVariantMap results() const;
    bool helperIsReady() const { return helperIsReady_; }
    bool isLoading() const { return readingHelper_.isBusy(); }

    /// One at a time: does nothing while another one runs.
    Q_INVOKABLE void run(const QString& task);
    Q_INVOKABLE void stop();
    /// Looks at machine and helper again.
    Q_INVOKABLE void refresh();

signals:
    void tasksChanged();
    void runChanged();
    void elapsedChanged();
    void helperChanged();

private:
    /// How one ended.
    struct RunSummary {
        std::optional<MaintenanceTask> task; ///< nothing for one from before this window
        std::string summary;
        Outcome outcome = Outcome::success;
        Date time;
        double duration = 0; ///< seconds
    };

    void openLog();
    void finish(MaintenanceTask task, const automation::MaintenanceJobResult& result);
    QString titleOf(MaintenanceTask task) const;

    AppContext& context_;
    const helper::MaintenanceWork work_;
    std::optional<MaintenanceTask> running_;
    Date startedAt_;
    bool stopping_ = false;
    std::optional<RunSummary> last_;
    std::map<MaintenanceTask, RunSummary> ended_;
    QString log_;
    QString notice_;
    bool helperIsReady_ = true;
    QTimer ticking_;
    Background working_;
    Background readingHelper_;
    Background readingLog_;
};

} // namespace vh::app
