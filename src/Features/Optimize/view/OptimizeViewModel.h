#pragma once

#include "Features/Optimize/work/OptimizeRunner.h"
#include "app/Background.h"

#include <QObject>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>
#include <memory>
#include <optional>

namespace vh {
struct UndoResult;
}

namespace vh::app {

class AppContext;
class AutomationLife;

/// The one-button run on the first page: its profile, what it would do, what it does, and what it did. Whoever starts
/// it in this process, it is shown here. The log is read after the first frame.
class OptimizeViewModel : public QObject {
    Q_OBJECT
    /// What runs now, what the run of before came to, or else what a run would do, in one line.
    Q_PROPERTY(QString line READ line NOTIFY changed)
    /// {id, title, name, value, outcome, stateText, text, details, durationText}: `title` is short, `value` 0 to 1 or
    /// -1 while it runs, `outcome` empty before its end.
    Q_PROPERTY(QVariantList steps READ steps NOTIFY stepsChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)
    /// It was asked to stop and has not ended yet.
    Q_PROPERTY(bool isStopping READ isStopping NOTIFY changed)
    /// How long it has been running; empty at rest.
    Q_PROPERTY(QString elapsedText READ elapsedText NOTIFY elapsedChanged)
    /// The steps shown have been run.
    Q_PROPERTY(bool hasResult READ hasResult NOTIFY changed)

    /// The last run, whichever process did it; both empty before the first.
    Q_PROPERTY(QString lastText READ lastText NOTIFY pastChanged)
    Q_PROPERTY(QString lastOutcome READ lastOutcome NOTIFY pastChanged)
    Q_PROPERTY(QString lastSummary READ lastSummary NOTIFY pastChanged)
    /// What all runs in the log have freed, less what was put back; empty while that is nothing.
    Q_PROPERTY(QString freedText READ freedText NOTIFY pastChanged)
    /// Things of the last run lie in the Trash still.
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY pastChanged)
    Q_PROPERTY(bool isUndoing READ isUndoing NOTIFY pastChanged)

    /// {icon, title, detail, removes}
    Q_PROPERTY(QVariantList checks READ checks NOTIFY checksChanged)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY checksChanged)
    /// Some of the profile's tasks would be left out because the helper is not set up.
    Q_PROPERTY(bool needsHelper READ needsHelper NOTIFY helperChanged)
    Q_PROPERTY(bool hasSteps READ hasSteps NOTIFY stepsChanged)
public:
    OptimizeViewModel(AppContext& context, AutomationLife& life);
    ~OptimizeViewModel() override;

    QString line() const;
    QVariantList steps() const { return steps_; }
    bool isRunning() const { return state_.isRunning || working_.isBusy(); }
    bool isStopping() const { return stopping_; }
    QString elapsedText() const;
    bool hasResult() const { return !isRunning() && showsRun(); }
    QString lastText() const;
    QString lastOutcome() const;
    QString lastSummary() const;
    QString freedText() const;
    bool canUndo() const { return past_.canUndo && !isRunning() && !undoing_.isBusy(); }
    bool isUndoing() const { return undoing_.isBusy(); }
    QVariantList checks() const;
    bool isChecking() const { return checking_.isBusy(); }
    bool needsHelper() const { return needsHelper_; }
    bool hasSteps() const { return !profile_.steps().empty(); }

    Q_INVOKABLE void run();
    Q_INVOKABLE void cancel();
    /// Looks at what a run would do; changes nothing.
    Q_INVOKABLE void check();
    Q_INVOKABLE void stopCheck();
    /// Puts back what the last run moved to the Trash; what came of it is said.
    Q_INVOKABLE void undo();
    /// {cleanStorage, cleanPrivacy, smartHealth, maintenanceTasks}, as it is stored.
    Q_INVOKABLE QVariantMap profile() const;
    /// Stores it; why that could not be, else nothing.
    Q_INVOKABLE QString saveProfile(const QVariantMap& profile);
    /// The switches of the profile: {key, title, line, isAvailable}.
    Q_INVOKABLE QVariantList profileSteps() const;

signals:
    void changed();
    void stepsChanged();
    void elapsedChanged();
    void pastChanged();
    void checksChanged();
    void helperChanged();
    /// Something for the person, in passing.
    void said(const QString& text);

private:
    /// What the log knows of all runs.
    struct Past {
        std::optional<RunRecord> last;
        double freedBytes = 0; ///< less what was put back
        bool canUndo = false;  ///< of the last run

        void add(RunRecord&& record);
    };

    automation::OptimizeRunner& runner();
    void openLog();
    void readPast();
    void readHelper();
    void follow();
    void retell();
    bool showsRun() const { return !state_.steps.empty() && !profileIsNewer_; }
    void finishUndo(std::future<UndoResult> result);
    void emitWork();
    QVariantList stepsOfNow() const;
    QVariantMap stepRow(const automation::OptimizeRunner::Step& step) const;
    const RunRecord* last() const;

    AppContext& context_;
    AutomationLife& life_;
    automation::OptimizeProfile profile_;
    bool profileIsNewer_ = false; ///< it was changed since the run that the runner remembers
    bool stopping_ = false;
    std::shared_ptr<void> observing_;
    automation::OptimizeRunner::Snapshot state_;
    QVariantList steps_;
    Past past_;
    bool needsHelper_ = false;
    QTimer ticking_;
    Background working_;
    Background checking_;
    Background undoing_;
    Background readingPast_;
    Background readingHelper_;
};

} // namespace vh::app
