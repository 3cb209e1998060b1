#pragma once

#include "Features/Flows/view/FlowDocument.h"
#include "Features/Flows/view/FlowFieldRows.h"
#include "Features/Flows/view/FlowScene.h"

#include <QObject>
#include <QTimer>
#include <QVariantMap>
#include <memory>
#include <optional>

namespace vh::automation {
class Automation;
class FlowsService;
struct FlowStart;
} // namespace vh::automation

namespace vh::app {

class AppContext;

/// One flow on its canvas: what is selected, filled in, joined, run, and how its last runs went. Changes are stored
/// by themselves soon after they were made.
class FlowEditorViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString flowId READ flowId NOTIFY opened)
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY opened)
    Q_PROPERTY(bool readOnly READ isReadOnly NOTIFY opened)
    Q_PROPERTY(QString name READ name NOTIFY flowChanged)
    Q_PROPERTY(QString line READ line NOTIFY lineChanged)
    Q_PROPERTY(QAbstractItemModel* nodes READ nodes CONSTANT)
    Q_PROPERTY(QAbstractItemModel* edges READ edges CONSTANT)
    Q_PROPERTY(QAbstractItemModel* fields READ fields CONSTANT)
    Q_PROPERTY(QAbstractItemModel* runs READ runs CONSTANT)
    Q_PROPERTY(double nodeWidth READ nodeWidth CONSTANT)
    Q_PROPERTY(double nodeHeight READ nodeHeight CONSTANT)
    Q_PROPERTY(double grid READ grid CONSTANT)
    Q_PROPERTY(QRectF bounds READ bounds NOTIFY flowChanged)
    /// As it was made, nothing added to it yet.
    Q_PROPERTY(bool isBlank READ isBlank NOTIFY flowChanged)
    /// How the inspector was left, here or in an earlier window: "folded", "unfolded"; empty before the first time.
    Q_PROPERTY(QString inspectorStanding READ inspectorStanding WRITE setInspectorStanding NOTIFY
                   inspectorStandingChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY flowChanged)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY flowChanged)
    Q_PROPERTY(QVariantList addOptions READ addOptions NOTIFY flowChanged)
    Q_PROPERTY(QVariantList variables READ variables NOTIFY variablesChanged)
    Q_PROPERTY(QVariantList conditionOptions READ conditionOptions NOTIFY opened)
    /// "", "conflict" or "gone".
    Q_PROPERTY(QString trouble READ trouble NOTIFY flowChanged)
    /// The selected node or edge; empty for none.
    Q_PROPERTY(QString selectedNode READ selectedNode NOTIFY selectionChanged)
    Q_PROPERTY(QString selectedEdge READ selectedEdge NOTIFY selectionChanged)
    /// What there is to say of the selected node: title, ownTitle, givenTitle, icon, isStart, detail, problemText, planText, state,
    /// stateText; once it ran: summary, output, durationText.
    Q_PROPERTY(QVariantMap node READ node NOTIFY nodeChanged)
    /// Where the selected node leads: [{edgeId, title, condition}].
    Q_PROPERTY(QVariantList links READ links NOTIFY linksChanged)
    /// Of the selected edge: from, to, condition.
    Q_PROPERTY(QVariantMap edge READ edge NOTIFY linksChanged)
    /// [{node, title, text, blocks}].
    Q_PROPERTY(QVariantList problems READ problems NOTIFY problemsChanged)
    Q_PROPERTY(bool isBlocked READ isBlocked NOTIFY problemsChanged)
    /// The lines of the dry run, while one is shown: [{node, title, text}].
    Q_PROPERTY(QVariantList plan READ plan NOTIFY planChanged)
    Q_PROPERTY(bool isPlanned READ isPlanned NOTIFY planChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY stateChanged)
    /// The run of the past whose results the canvas shows; empty: what goes on now.
    Q_PROPERTY(QString shownRun READ shownRun NOTIFY stateChanged)
    Q_PROPERTY(int runCount READ runCount NOTIFY stateChanged)
    /// While an edge is drawn: from where, to which node, and why it cannot lead there.
    Q_PROPERTY(QString connectFrom READ connectFrom NOTIFY connectChanged)
    Q_PROPERTY(QString aimedAt READ aimedAt NOTIFY connectChanged)
    Q_PROPERTY(QString connectFault READ connectFault NOTIFY connectChanged)
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
public:
    FlowEditorViewModel(AppContext& context, automation::Automation& automation);
    ~FlowEditorViewModel() override;

    QString flowId() const;
    bool isOpen() const { return document_.has_value(); }
    bool isReadOnly() const { return readOnly_; }
    QString name() const;
    QString line() const { return line_; }
    QAbstractItemModel* nodes() { return &nodes_; }
    QAbstractItemModel* edges() { return &edges_; }
    QAbstractItemModel* fields() { return &fields_; }
    QAbstractItemModel* runs() { return &runs_; }
    static double nodeWidth() { return canvas::nodeWidth; }
    static double nodeHeight() { return canvas::nodeHeight; }
    static double grid() { return canvas::grid; }
    QRectF bounds() const;
    bool isBlank() const;
    QString inspectorStanding() const { return inspectorStanding_; }
    void setInspectorStanding(const QString& standing);
    bool canUndo() const { return document_ && document_->canUndo(); }
    bool canRedo() const { return document_ && document_->canRedo(); }
    QVariantList addOptions() const;
    QVariantList variables() const { return variables_; }
    QVariantList conditionOptions() const;
    QString trouble() const;
    QString selectedNode() const;
    QString selectedEdge() const;
    QVariantMap node() const { return node_; }
    QVariantList links() const { return links_; }
    QVariantMap edge() const { return edge_; }
    QVariantList problems() const { return problems_; }
    bool isBlocked() const;
    QVariantList plan() const { return plan_; }
    bool isPlanned() const { return !plan_.isEmpty(); }
    bool isRunning() const;
    QString shownRun() const;
    int runCount() const { return runs_.rowCount(); }
    QString connectFrom() const;
    QString aimedAt() const;
    QString connectFault() const;
    QString message() const { return message_; }

    /// False when there is no such flow.
    Q_INVOKABLE bool open(const QString& flowId);
    /// Stores what is not stored yet.
    Q_INVOKABLE void close();
    /// The same, and stays open; false, and `message` says why, when it could not be.
    Q_INVOKABLE bool save();
    Q_INVOKABLE void keepMine();
    Q_INVOKABLE void takeTheirs();

    /// A node or an edge; anything else selects nothing.
    Q_INVOKABLE void select(const QString& id);
    /// Goes to the next node in a direction: "left", "right", "up" or "down". While an edge is drawn, its end goes.
    Q_INVOKABLE void step(const QString& direction);
    /// Goes to the next edge of the selected node, or of the node the selected edge comes from.
    Q_INVOKABLE void stepEdge();
    Q_INVOKABLE QString nodeAt(double x, double y) const;
    Q_INVOKABLE QString edgeAt(double x, double y, double reach) const;

    Q_INVOKABLE void rename(const QString& name);
    Q_INVOKABLE void setTitle(const QString& title);
    Q_INVOKABLE void setField(const QString& key, const QString& value);
    Q_INVOKABLE void setCondition(const QString& edgeId, const QString& condition);
    /// Always, on success, on failure, and round again.
    Q_INVOKABLE void turnCondition(const QString& edgeId);
    /// To the nearest point of the grid. Moves of one node in a row are one step back until endStep.
    Q_INVOKABLE void moveTo(const QString& nodeId, double x, double y);
    /// The selected node, by points of the grid.
    Q_INVOKABLE void nudge(int right, int down);
    Q_INVOKABLE void endStep();
    /// Adds a node of a kind at a point, or after the selected node and joined to it; selects it.
    Q_INVOKABLE void addAt(const QString& kind, double x, double y);
    Q_INVOKABLE void addNext(const QString& kind);
    Q_INVOKABLE void duplicateSelected();
    Q_INVOKABLE void removeSelected();
    Q_INVOKABLE void removeEdge(const QString& edgeId);
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();

    Q_INVOKABLE void beginConnect(const QString& nodeId);
    Q_INVOKABLE void aim(const QString& nodeId);
    /// Joins the two; false when they cannot be. The edge is selected.
    Q_INVOKABLE bool finishConnect();
    Q_INVOKABLE void cancelConnect();

    /// [{name, title, isFolder}] of the values that a start of its kind would give and that a run by hand has to be told.
    Q_INVOKABLE QVariantList neededValues() const;
    /// `values`: paths by the names of neededValues.
    Q_INVOKABLE void run(const QVariantMap& values = {});
    Q_INVOKABLE void resume(const QString& runId);
    Q_INVOKABLE void stop();
    /// Shows what a run would do, or no longer.
    Q_INVOKABLE void toggleDryRun();
    /// Shows how a past run went; the one that is shown, or an empty one: what goes on now.
    Q_INVOKABLE void showRun(const QString& runId);

signals:
    void opened();
    void flowChanged();
    void inspectorStandingChanged();
    void lineChanged();
    void variablesChanged();
    void selectionChanged();
    void nodeChanged();
    void linksChanged();
    void problemsChanged();
    void planChanged();
    void stateChanged();
    void connectChanged();
    void messageChanged();

private:
    const flows::Flow& flow() const { return document_->flow(); }
    const flows::FlowNode* selected() const;
    const flows::FlowEdge* edgeOf(const std::optional<Uuid>& id) const;
    FlowWords words() const;
    template <class Change>
    bool edit(const std::string& step, Change change);
    void settle();
    void add(flows::FlowNodeKind kind, flows::FlowPoint at, const std::optional<Uuid>& after);
    void selectId(std::optional<Uuid> id);
    void start(const automation::FlowStart& how);
    bool attempt(const std::function<void()>& act);
    void say(const QString& message);

    void refresh();
    void refreshCanvas();
    void refreshInspector();
    void refreshRuns();
    void refreshLine();
    void readState();
    void followStore();
    void followRunner(const Uuid& flow);
    void retell();
    QVariantMap nodeFacts() const;
    QVariantList linkFacts() const;
    QVariantMap edgeFacts() const;
    QVariantList problemFacts() const;
    template <class Value>
    void put(Value& place, Value value, void (FlowEditorViewModel::*changed)()) {
        if (place == value)
            return;
        place = std::move(value);
        (this->*changed)();
    }

    AppContext& context_;
    automation::Automation& automation_;
    automation::FlowsService& service_;
    std::optional<FlowDocument> document_;
    bool readOnly_ = false;
    QString inspectorStanding_;
    FlowScene scene_;
    FlowSceneState state_;
    std::optional<Uuid> shownRun_;
    RecordListModel<FlowNodeRow> nodes_{FlowNodeRow::roles()};
    RecordListModel<FlowEdgeRow> edges_{FlowEdgeRow::roles()};
    RecordListModel<FlowFieldRow> fields_{FlowFieldRow::roles()};
    RecordListModel<FlowRunRow> runs_{FlowRunRow::roles()};
    QString line_;
    QVariantList variables_;
    QVariantMap node_;
    QVariantList links_;
    QVariantMap edge_;
    QVariantList problems_;
    QVariantList plan_;
    QString message_;
    QTimer saving_;
    std::shared_ptr<void> observingStore_;
    std::shared_ptr<void> observingRunner_;
};

} // namespace vh::app
