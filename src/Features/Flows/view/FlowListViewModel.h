#pragma once

#include "Features/Flows/view/FlowRows.h"
#include "Features/Flows/view/FlowWords.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <functional>
#include <memory>

namespace vh::automation {
class Automation;
class FlowsService;
} // namespace vh::automation

namespace vh::app {

class AppContext;

/// The flows, and what is done with one as a whole. Follows what other processes do.
class FlowListViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* flows READ flows CONSTANT)
    Q_PROPERTY(int count READ count NOTIFY changed)
    Q_PROPERTY(int runningCount READ runningCount NOTIFY changed)
    /// Which files cannot be read; empty while all can.
    Q_PROPERTY(QString damagedText READ damagedText NOTIFY changed)
    /// What the last act came to, when there is something to say.
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
public:
    FlowListViewModel(AppContext& context, automation::Automation& automation);
    ~FlowListViewModel() override;

    QAbstractItemModel* flows() { return &flows_; }
    int count() const { return flows_.rowCount(); }
    int runningCount() const;
    QString damagedText() const { return damagedText_; }
    QString message() const { return message_; }

    /// All give the identifier of what they made; empty, and `message` says why, when they could not.
    Q_INVOKABLE QString create();
    Q_INVOKABLE QString duplicate(const QString& flowId);
    /// Takes flows in from a file, a path or its URL, as export wrote it; under another identifier when one of this is
    /// there already.
    Q_INVOKABLE QString importFile(const QString& fileUrlOrPath);
    /// False, and `message` says why, when they could not.
    Q_INVOKABLE bool rename(const QString& flowId, const QString& name);
    Q_INVOKABLE bool remove(const QString& flowId);
    /// A path in the folder, as a person writes it, that an export would not take from another file.
    Q_INVOKABLE QString exportPath(const QString& flowId, const QString& folder) const;
    Q_INVOKABLE bool exportFile(const QString& flowId, const QString& fileUrlOrPath);
    /// Starts it; when it cannot be started, `message` says why.
    /// As of the editor; nothing for a flow that cannot run.
    Q_INVOKABLE QVariantList neededValues(const QString& flowId) const;
    /// Runs it with `values`, paths by the names of neededValues, or says why not.
    Q_INVOKABLE void run(const QString& flowId, const QVariantMap& values = {});
    Q_INVOKABLE void stop(const QString& flowId);
    /// The place of a flow in the list; -1 for none.
    Q_INVOKABLE int indexOf(const QString& flowId) const;
    /// name, from and running of a flow; empty for none.
    Q_INVOKABLE QVariantMap facts(const QString& flowId) const;

signals:
    void changed();
    void messageChanged();

private:
    FlowWords words() const;
    FlowRow row(const flows::Flow& flow, const QString& from) const;
    void refresh();
    void watch();
    std::string freeName(const std::string& pattern, const std::string& name) const;
    bool attempt(const std::function<void()>& act);
    void say(const QString& message);

    AppContext& context_;
    automation::Automation& automation_;
    automation::FlowsService& service_;
    RecordListModel<FlowRow> flows_{FlowRow::roles()};
    QString damagedText_;
    QString message_;
    QFileSystemWatcher watcher_;
    std::shared_ptr<void> observingStore_;
    std::shared_ptr<void> observingRunner_;
};

} // namespace vh::app
