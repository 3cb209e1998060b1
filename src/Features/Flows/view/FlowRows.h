#pragma once

#include "Features/Flows/Flow.h"
#include "app/RecordListModel.h"

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVariantList>
#include <array>
#include <span>

namespace vh::app {

/// How large a node is drawn, and on what it snaps, in units of the canvas; all multiples of 20, so that every zoom of
/// a twentieth falls on whole pixels.
namespace canvas {
inline constexpr double nodeWidth = 180;
inline constexpr double nodeHeight = 60;
inline constexpr double grid = 20;
/// The nearest point of the grid.
flows::FlowPoint snapped(double x, double y);
inline QRectF frame(const flows::FlowPoint& at) {
    return {at.x, at.y, nodeWidth, nodeHeight};
}
} // namespace canvas

/// A cubic curve from one node to another: it leaves on the side that faces the other.
struct FlowCurve {
    std::array<QPointF, 4> points;

    static FlowCurve between(const flows::FlowPoint& from, const flows::FlowPoint& to);
    QPointF at(double t) const;
    /// Of a point to the curve, within half a unit or so.
    double distance(QPointF point) const;
    bool operator==(const FlowCurve&) const = default;
};

/// One node as the canvas shows it.
struct FlowNodeRow {
    Uuid id;
    QString nodeId;
    double nodeX = 0;
    double nodeY = 0;
    QString kind;
    QString title;
    QString detail;
    QString icon;
    QString state; ///< "", "running" or the outcome's name
    QString stateText;
    QString problemText; ///< empty: none
    QString planText;    ///< of a dry run
    QString aim;         ///< while an edge is drawn: "", "from", "good" or "bad"
    bool selected = false;
    QString spoken; ///< for assistive programs

    const Uuid& key() const { return id; }
    bool operator==(const FlowNodeRow&) const = default;
    static std::span<const RecordListModel<FlowNodeRow>::Role> roles();
};

/// One edge as the canvas shows it.
struct FlowEdgeRow {
    Uuid id;
    QString edgeId;
    FlowCurve curve;
    QString condition;
    QString conditionTitle;
    bool selected = false;
    bool near = false; ///< one of its nodes is selected
    bool dim = false;  ///< the run that is shown did not go this way
    QString spoken;

    const Uuid& key() const { return id; }
    bool operator==(const FlowEdgeRow&) const = default;
    static std::span<const RecordListModel<FlowEdgeRow>::Role> roles();
};

/// One thing to fill in on a node.
struct FlowFieldRow {
    QString fieldKey;
    QString kind;
    QString title;
    QString value;
    QVariantList options; ///< [{value, title}] of what can be chosen
    bool takesVariables = false;

    const QString& key() const { return fieldKey; }
    bool operator==(const FlowFieldRow&) const = default;
    static std::span<const RecordListModel<FlowFieldRow>::Role> roles();
};

/// One run of the flow.
struct FlowRunRow {
    Uuid id;
    QString runId;
    QString outcome;
    QString outcomeTitle;
    QString timeText;
    QString triggerTitle;
    QString durationText;
    bool shown = false;
    bool canResume = false;

    const Uuid& key() const { return id; }
    bool operator==(const FlowRunRow&) const = default;
    static std::span<const RecordListModel<FlowRunRow>::Role> roles();
};

/// One flow of the list.
struct FlowRow {
    Uuid id;
    QString flowId;
    QString name;
    QString startText;
    QString lastOutcome; ///< empty: never run
    QString lastTitle;
    QString lastTime;
    QString problemText; ///< what keeps it from running
    QString from;        ///< who sent it; empty for an own one
    bool running = false;

    const Uuid& key() const { return id; }
    bool operator==(const FlowRow&) const = default;
    static std::span<const RecordListModel<FlowRow>::Role> roles();
};

} // namespace vh::app
