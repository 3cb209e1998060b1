#pragma once

#include "Core/CleanJob.h"
#include "Core/RemovalMethod.h"
#include "Core/RunRecord.h"
#include "app/ActivityCenter.h"
#include "app/Background.h"
#include "app/ScanItemRow.h"
#include "app/ScanSelection.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace vh {
class SuiteModule;
struct JobControl;
struct UndoResult;
} // namespace vh

namespace vh::app {

class AppContext;

/// The page of a tool that scans and cleans: scan, select, review, clean, and undo what went to the Trash.
class ScanCleanViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString toolID READ toolID CONSTANT)
    /// "idle", "scanned", "review", "working" or "done".
    Q_PROPERTY(QString stage READ stageName NOTIFY stateChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY stateChanged)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY stateChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)
    Q_PROPERTY(QString method READ methodName WRITE setMethodName NOTIFY stateChanged)
    /// Filters what is shown, and what toggleCategory and toggleSelectAll act on; never what is selected already.
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY filterChanged)
    Q_PROPERTY(QString category READ category WRITE setCategory NOTIFY filterChanged)
    /// Whether what others may still need in a shared folder is offered too, and how many such items there are.
    Q_PROPERTY(bool showsRecent READ showsRecent WRITE setShowsRecent NOTIFY reportChanged)
    Q_PROPERTY(int recentCount READ recentCount NOTIFY reportChanged)
    Q_PROPERTY(QAbstractItemModel* items READ items CONSTANT)
    /// Of the whole report.
    Q_PROPERTY(int itemCount READ itemCount NOTIFY reportChanged)
    Q_PROPERTY(QString totalText READ totalText NOTIFY reportChanged)
    Q_PROPERTY(QVariantList categories READ categories NOTIFY selectionChanged)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY selectionChanged)
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectionChanged)
    /// How much is selected of what is shown: "all", "some" or "none".
    Q_PROPERTY(QString shownSelection READ shownSelection NOTIFY selectionChanged)
    Q_PROPERTY(QVariantList selectedItems READ selectedItems NOTIFY selectionChanged)
    /// What the last clean did, or what undoing it did; errorMessage is why a scan failed.
    Q_PROPERTY(QString resultText READ resultText NOTIFY resultChanged)
    Q_PROPERTY(QString resultOutcome READ resultOutcome NOTIFY resultChanged)
    Q_PROPERTY(QStringList skippedDetails READ skippedDetails NOTIFY resultChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY resultChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY resultChanged)
    /// The words of the undo button, such as "Put 4 items back"; empty when nothing can be undone.
    Q_PROPERTY(QString undoText READ undoText NOTIFY resultChanged)
public:
    enum class Stage { idle, scanned, review, working, done };

    ScanCleanViewModel(AppContext& context, std::shared_ptr<SuiteModule> module);
    /// Stops what runs and waits for its end: a clean still writes its record.
    ~ScanCleanViewModel() override;

    QString toolID() const;
    Stage stage() const { return stage_; }
    QString stageName() const;
    bool isScanning() const { return isScanning_; }
    bool isCleaning() const { return stage_ == Stage::working; }
    double progress() const { return progress_; }
    QString progressText() const { return progressText_; }
    QString methodName() const;
    void setMethodName(const QString& name);
    QString search() const { return search_; }
    void setSearch(const QString& text);
    QString category() const { return category_; }
    void setCategory(const QString& name);
    bool showsRecent() const { return showsRecent_; }
    void setShowsRecent(bool value);
    int recentCount() const;
    QAbstractItemModel* items() { return &rows_; }
    int itemCount() const { return static_cast<int>(selection_.report().items.size()); }
    QString totalText() const;
    QVariantList categories() const;
    int selectedCount() const { return static_cast<int>(selection_.selected().size()); }
    QString selectedText() const;
    QString shownSelection() const;
    QVariantList selectedItems() const;
    QString resultText() const { return resultText_; }
    QString resultOutcome() const { return resultOutcome_; }
    QStringList skippedDetails() const { return skippedDetails_; }
    QString errorMessage() const { return errorMessage_; }
    bool canUndo() const { return undoableCount_ > 0; }
    QString undoText() const;
    const std::set<std::string>& protectedPaths() const { return protectedPaths_; }

    Q_INVOKABLE void scan();
    /// Stops a scan, a clean or an undo that runs.
    Q_INVOKABLE void stop();
    Q_INVOKABLE void toggle(const QString& itemId);
    /// By the row of `items`.
    Q_INVOKABLE void toggleAt(int row);
    /// Selects what is shown of it; clears it when all of that is selected already.
    Q_INVOKABLE void toggleCategory(const QString& name);
    Q_INVOKABLE void toggleSelectAll();
    /// To the review, when something is selected.
    Q_INVOKABLE void review();
    /// From the review or the result to the list.
    Q_INVOKABLE void back();
    /// Removes what the review shows; does nothing outside the review.
    Q_INVOKABLE void start();
    /// Puts back what the last clean moved to the Trash.
    Q_INVOKABLE void undo();

signals:
    void stateChanged();
    void progressChanged();
    void filterChanged();
    void reportChanged();
    void selectionChanged();
    void resultChanged();

private:
    bool isIdle() const { return !isScanning_ && !isCleaning(); }
    JobControl controlOf(const Background::Task& task);
    void setStage(Stage stage);
    void setProgress(double fraction, const QString& text);
    void startScan();
    void showReport(ScanReport report);
    void finishScan(std::future<ScanReport> result);
    void beginWork(std::string_view textKey);
    void endWork();
    void finishClean(CleanJobResult result);
    void finishUndo(const UndoResult& result);
    void clearResult();
    void showResult(Outcome outcome, const std::string& text);
    void changeSelection(const std::function<void()>& change);
    void rebuildRows();
    ScanItemRow rowOf(const ScanItem& item, int64_t largest) const;
    QString categoryTitle(std::string_view category) const;
    void retell();

    AppContext& context_;
    const std::shared_ptr<SuiteModule> module_;
    Stage stage_ = Stage::idle;
    bool isScanning_ = false;
    double progress_ = -1;
    QString progressText_;
    RemovalMethod method_ = RemovalMethod::trash;
    QString search_;
    QString category_;
    ScanReport report_; ///< all that was found, of which selection_ has what is offered
    bool showsRecent_ = false;
    ScanSelection selection_;
    RecordListModel<ScanItemRow> rows_;
    std::set<std::string> protectedPaths_;
    QString resultText_;
    QString resultOutcome_;
    std::optional<Uuid> undoableRun_;
    int64_t undoableCount_ = 0;
    QStringList skippedDetails_;
    QString errorMessage_;
    std::optional<JobToken> job_;
    Background work_;
};

} // namespace vh::app
