#pragma once

#include "Platform/WholeDisks.h"
#include "Tools/FastCopy/CopyItems.h"
#include "Tools/FastCopy/CopyJob.h"
#include "Tools/FastCopy/view/CopyFiles.h"
#include "Tools/FastCopy/view/CopyPlaces.h"
#include "Tools/FastCopy/view/CopyQueue.h"
#include "Tools/FastCopy/view/CopyRows.h"
#include "app/Background.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace vh::app {

class AppContext;
class AutomationLife;

/// Copying to several places: what is chosen, how, the queue, and what came of each copy. Nothing of it waits for a
/// disk on the main thread.
class FastCopyViewModel : public QObject {
    Q_OBJECT
    /// {name, path, icon, fault}
    Q_PROPERTY(QVariantList sources READ sources NOTIFY sourcesChanged)
    /// {name, path, text, fault, isTight, used, need}: `used` and `need` are shares of the place, or -1 where it does
    /// not tell; `isTight` where what is chosen does not fit.
    Q_PROPERTY(QVariantList destinations READ destinations NOTIFY destinationsChanged)
    /// What is chosen in numbers; empty without sources.
    Q_PROPERTY(QString planText READ planText NOTIFY chosenChanged)
    Q_PROPERTY(QString largestText READ largestText NOTIFY chosenChanged)
    Q_PROPERTY(bool isLooking READ isLooking NOTIFY chosenChanged)
    Q_PROPERTY(bool canRun READ canRun NOTIFY chosenChanged)
    /// Why it cannot be run, and whether setting up the root helper is what helps.
    Q_PROPERTY(QString blocker READ blocker NOTIFY chosenChanged)
    Q_PROPERTY(bool lacksHelper READ lacksHelper NOTIFY chosenChanged)
    Q_PROPERTY(bool hasDisk READ hasDisk NOTIFY chosenChanged)
    /// {mode, conflict, verify, algorithm, preserveMetadata, links, manifest}, as they act: a clone verifies whatever was chosen.
    Q_PROPERTY(QVariantMap options READ options NOTIFY optionsChanged)
    Q_PROPERTY(bool runTogether READ runTogether WRITE setRunTogether NOTIFY optionsChanged)
    /// {value, title, detail, fault}: whole disks of this machine.
    Q_PROPERTY(QVariantList disks READ disks NOTIFY disksChanged)
    /// Of the disk that has to be unmounted first; empty when nothing is asked.
    Q_PROPERTY(QString unmountQuestion READ unmountQuestion NOTIFY unmountQuestionChanged)

    /// CopyJobRow
    Q_PROPERTY(QAbstractItemModel* jobs READ jobs CONSTANT)
    Q_PROPERTY(bool isActive READ isActive NOTIFY jobsChanged)
    Q_PROPERTY(int jobCount READ jobCount NOTIFY jobsChanged)
    Q_PROPERTY(bool hasFinished READ hasFinished NOTIFY jobsChanged)

    /// {title, headline, outcome, line, detail, lanes, manifests, problems, problemCount, fileCount} of the job that is
    /// looked at, problems as lines and no more of them than a person reads; empty without one.
    Q_PROPERTY(QVariantMap report READ report NOTIFY reportChanged)
    Q_PROPERTY(QAbstractItemModel* reportFiles READ reportFiles CONSTANT)
public:
    FastCopyViewModel(AppContext& context, AutomationLife& life, CopyDependencies dependencies);
    ~FastCopyViewModel() override;

    QVariantList sources() const { return sourceRows_; }
    QVariantList destinations() const { return destinationRows_; }
    QString planText() const;
    QString largestText() const;
    bool isLooking() const { return places_.isLooking() || planning_.isBusy(); }
    bool canRun() const { return !sources_.empty() && !destinations_.empty() && blocker().isEmpty(); }
    QString blocker() const;
    bool lacksHelper() const { return hasDisk() && !diskBlocker_.empty(); }
    bool hasDisk() const { return disk() != nullptr; }
    QVariantMap options() const;
    bool runTogether() const { return together_; }
    void setRunTogether(bool together);
    QVariantList disks() const;
    QString unmountQuestion() const { return question_; }
    QAbstractItemModel* jobs() { return &rows_; }
    bool isActive() const { return queue_.isActive(); }
    int jobCount() const { return static_cast<int>(queue_.jobs().size()); }
    bool hasFinished() const;
    QVariantMap report() const { return report_; }
    QAbstractItemModel* reportFiles() { return &files_; }

    /// Paths or files' URLs. What is there already is said.
    Q_INVOKABLE void addSources(const QStringList& paths);
    Q_INVOKABLE void addDestinations(const QStringList& paths);
    /// One of `disks`, by its value.
    Q_INVOKABLE void addDisk(const QString& bsdName);
    Q_INVOKABLE void removeSource(int row);
    Q_INVOKABLE void removeDestination(int row);
    /// Makes the folder that is not there; what went wrong is said.
    Q_INVOKABLE void makeDestination(int row);
    Q_INVOKABLE void clear();
    Q_INVOKABLE void lookForDisks();
    Q_INVOKABLE void setOption(const QString& key, const QVariant& value);
    /// Looks at all places again.
    Q_INVOKABLE void refresh();

    /// Puts what is chosen into the queue; asks first where a disk has to be unmounted.
    Q_INVOKABLE void run();
    Q_INVOKABLE void answerUnmount(bool yes);
    Q_INVOKABLE void togglePause(const QString& job, int destination);
    Q_INVOKABLE void remove(const QString& job, int destination);
    /// One that waits is taken off.
    Q_INVOKABLE void stop(const QString& job);
    Q_INVOKABLE void takeOff(const QString& job);
    Q_INVOKABLE void clearFinished() { queue_.clearFinished(); }
    Q_INVOKABLE void showReport(const QString& job);
    /// Of the files of the report, only those that failed or differ.
    Q_INVOKABLE void showFiles(bool faultyOnly);

signals:
    void sourcesChanged();
    void destinationsChanged();
    void chosenChanged();
    void optionsChanged();
    void disksChanged();
    void unmountQuestionChanged();
    void jobsChanged();
    void reportChanged();
    /// Something for the person, in passing.
    void said(const QString& text);

private:
    struct Need {
        int64_t bytes = 0;    ///< of this place alone
        int64_t together = 0; ///< of all on its device
    };
    void openOptions();
    void store();
    /// Tells what is chosen anew; lists only when they differ, so that the keyboard stays where it is.
    void tellChosen();
    void measure();
    void readHelper();
    void followQueue();
    void tellEnd(const copy::CopyJob& job);
    void enqueue(bool unmount);
    std::vector<std::string> sourcePaths() const;
    std::vector<std::string> realSourcePaths() const;
    const copy::RescueDisk* disk() const;
    std::string realPath(const std::string& path) const;
    std::optional<Need> needOf(size_t destination) const;
    QString faultOfSource(size_t row) const;
    QString faultOfDestination(size_t row) const;
    QVariantMap sourceRow(size_t row) const;
    QVariantMap destinationRow(size_t row) const;

    AppContext& context_;
    AutomationLife& life_;
    const CopyDependencies dependencies_;
    std::vector<copy::CopySource> sources_;
    std::vector<std::string> destinations_;
    QVariantList sourceRows_, destinationRows_; ///< as they were told
    copy::CopyOptions options_;
    std::optional<copy::ManifestKind> manifest_;
    bool together_ = false;
    std::optional<copy::CopyPlan> plan_; ///< of the sources of now
    std::string diskBlocker_;            ///< of this machine, for people
    std::vector<DiskFacts> disks_;
    QString question_;
    QVariantMap report_;
    std::shared_ptr<const copy::CopyReport> reported_;
    std::optional<copy::CopyJob> worst_; ///< of those that ended since all was quiet
    RecordListModel<CopyJobRow> rows_;
    CopyFilesModel files_;
    CopyPlaces places_;
    CopyQueue queue_;
    Background planning_;
    Background making_;
    Background readingHelper_;
    Background readingDisks_;
};

} // namespace vh::app
