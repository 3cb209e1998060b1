#pragma once

#include "Core/Texts.h"
#include "Core/Uuid.h"
#include "Tools/FolderSync/view/FolderSyncPlanModel.h"
#include "Tools/FolderSync/view/FolderSyncRow.h"
#include "app/Background.h"

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>
#include <memory>
#include <optional>

namespace vh::automation {
class SyncRunner;
struct SyncJobResult;
} // namespace vh::automation
namespace vh::sync {
struct SyncPair;
}

namespace vh::app {

class AppContext;

/// The pairs of folders, what a sync of one would do, and the sync. What touches the folders of a pair happens off the
/// main thread: they may lie on a disk that does not answer.
class FolderSyncViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* pairs READ pairs CONSTANT)
    Q_PROPERTY(int pairCount READ pairCount NOTIFY pairsChanged)
    /// How many pairs there are, and how many need attention.
    Q_PROPERTY(QString countText READ countText NOTIFY pairsChanged)
    /// The roles of the pair that is chosen; empty for none.
    Q_PROPERTY(QVariantMap selected READ selected NOTIFY pairsChanged)
    Q_PROPERTY(bool canSync READ canSync NOTIFY pairsChanged)
    /// Of the chosen pair: "idle", "planning", "running" or "finished".
    Q_PROPERTY(QString phase READ phaseName NOTIFY stateChanged)
    /// Another pair is being synced; what it says for people.
    Q_PROPERTY(QString busyText READ busyText NOTIFY stateChanged)
    Q_PROPERTY(bool isStopping READ isStopping NOTIFY stateChanged)
    /// 0 to 1, or -1 while it is not known.
    Q_PROPERTY(double progress READ progress NOTIFY stateChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY stateChanged)
    Q_PROPERTY(QString currentText READ currentText NOTIFY stateChanged)
    /// Of the shown plan while it is carried out; else -1.
    Q_PROPERTY(int rowAtWork READ rowAtWork NOTIFY stateChanged)

    /// What a sync of the chosen pair would do; empty without a plan.
    Q_PROPERTY(QAbstractItemModel* plan READ plan CONSTANT)
    Q_PROPERTY(bool hasPlan READ hasPlan NOTIFY planChanged)
    Q_PROPERTY(int actionCount READ actionCount NOTIFY planChanged)
    /// {value, title, count, countText, sizeText} for new, changed, deleted and folders.
    Q_PROPERTY(QVariantList kinds READ kinds NOTIFY planChanged)
    Q_PROPERTY(QString unchangedText READ unchangedText NOTIFY planChanged)
    /// What will happen, in numbers.
    Q_PROPERTY(QString planText READ planText NOTIFY planChanged)
    Q_PROPERTY(QStringList unreadable READ unreadable NOTIFY planChanged)
    Q_PROPERTY(QString kind READ kindName WRITE setKindName NOTIFY filterChanged)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY filterChanged)
    /// {key, descending}: by "size", or without a key as it will be carried out.
    Q_PROPERTY(QVariantMap order READ order NOTIFY filterChanged)
    /// {title, text, count} of a plan that removes something and waits for a yes; empty while none does.
    Q_PROPERTY(QVariantMap confirmTrash READ confirmTrash NOTIFY planChanged)

    /// {outcome, text} of the last sync of the chosen pair; empty before.
    Q_PROPERTY(QVariantMap result READ result NOTIFY stateChanged)
    Q_PROPERTY(QStringList errors READ errors NOTIFY stateChanged)
    /// Why the folders could not be compared.
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY stateChanged)

    Q_PROPERTY(bool opensAtLogin READ opensAtLogin NOTIFY loginChanged)
public:
    FolderSyncViewModel(AppContext& context, automation::SyncRunner& runner);
    ~FolderSyncViewModel() override;

    QAbstractItemModel* pairs() { return &rows_; }
    int pairCount() const { return rows_.rowCount(); }
    QString countText() const;
    QVariantMap selected() const;
    bool canSync() const;

    enum class Phase { idle, planning, running, finished };
    Phase phase() const;
    QString phaseName() const;
    QString busyText() const;
    bool isStopping() const;
    double progress() const;
    QString progressText() const;
    QString currentText() const;
    int rowAtWork() const { return applied_ && applied_ == selected_ ? actions_.rowAtWork() : -1; }

    QAbstractItemModel* plan() { return &actions_; }
    bool hasPlan() const { return actions_.plan() && planned_ == selected_; }
    int actionCount() const;
    QVariantList kinds() const;
    QString unchangedText() const;
    QString planText() const;
    QStringList unreadable() const;
    QString kindName() const { return kind_; }
    void setKindName(const QString& kind);
    QString search() const { return search_; }
    QVariantMap order() const { return order_.map(); }
    /// The third press of a heading brings the order of the plan back.
    Q_INVOKABLE void orderBy(const QString& key);
    void setSearch(const QString& text);
    QVariantMap confirmTrash() const;

    QVariantMap result() const;
    QStringList errors() const;
    QString errorMessage() const { return planned_ == selected_ ? errorMessage_ : QString(); }

    bool opensAtLogin() const { return opensAtLogin_; }
    Q_INVOKABLE void enableOpenAtLogin(bool opens);

    Q_INVOKABLE void select(const QString& id);
    /// Makes the plan of the chosen pair and shows it.
    Q_INVOKABLE void compare();
    /// Carries the shown plan out, or makes one first: at once when it removes nothing, else once it is approved.
    Q_INVOKABLE void sync();
    Q_INVOKABLE void approve();
    Q_INVOKABLE void decline();
    /// Of comparing or syncing.
    Q_INVOKABLE void stop();
    /// Puts plan, result and error away.
    Q_INVOKABLE void dismiss();

    /// For the form: {name, source, destination, deleteExtraneous, compareContents, watch} of a pair, or of a new one.
    Q_INVOKABLE QVariantMap draft(const QString& id);
    /// Stores the form and chooses the pair. Why it could not be, for people; empty when it was.
    Q_INVOKABLE QString save(const QString& id, const QVariantMap& draft);
    Q_INVOKABLE void setWatch(const QString& id, bool watch);
    /// The folders stay.
    Q_INVOKABLE void remove(const QString& id);
    Q_INVOKABLE void refresh();

signals:
    void pairsChanged();
    void stateChanged();
    void planChanged();
    void filterChanged();
    void loginChanged();
    /// Something for the person, in passing.
    void said(const QString& text);

private:
    std::optional<sync::SyncPair> pairOf(const std::optional<Uuid>& id) const;
    bool isRunningSelected() const;
    void makePlan(bool goesOn);
    void showPlan(const sync::SyncPlan& plan, bool goesOn);
    void goOn();
    void apply();
    void finish(const Uuid& pair, const automation::SyncJobResult& result);
    void failToPlan(const std::exception& error);
    void forgetPlan();
    void say(std::string_view key, const std::vector<TextArgument>& arguments = {});
    bool store(const std::function<void()>& change);
    void tellAll();

    /// A comparison that hangs on a disk without answer does not hold up the next one.
    static constexpr int threadsOfPlans = 4;

    AppContext& context_;
    automation::SyncRunner& runner_;
    RecordListModel<FolderSyncRow> rows_;
    std::optional<Uuid> selected_;

    FolderSyncPlanModel actions_;
    QString kind_;
    QString search_;
    ColumnOrder order_;
    std::optional<Uuid> planned_; ///< whose plan or error is known, or is being made
    bool isPlanning_ = false;
    bool confirms_ = false;
    QString errorMessage_;

    std::optional<Uuid> applied_; ///< whose plan is being carried out
    struct Result {
        Uuid pair;
        QString outcome;
        QString text;
        QStringList errors;
    };
    std::optional<Result> result_;

    bool opensAtLogin_ = false;
    QTimer looking_;
    QTimer soon_; ///< many changes become one look
    std::shared_ptr<void> observing_;
    Background work_{threadsOfPlans};
};

} // namespace vh::app
