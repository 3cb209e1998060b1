#include "Features/Flows/view/FlowRows.h"

#include <algorithm>
#include <cmath>

namespace vh::app {

namespace {

/// How far a curve runs straight before it bends.
constexpr double leastBend = 30;
constexpr int samples = 24;

template <int Index>
QVariant pointOf(const FlowEdgeRow& row) {
    return row.curve.points[Index];
}

QVariant middleOf(const FlowEdgeRow& row) {
    return row.curve.at(0.5);
}

QVariant frameOf(const FlowEdgeRow& row) {
    const auto& p = row.curve.points;
    const auto [left, right] = std::minmax({p[0].x(), p[1].x(), p[2].x(), p[3].x()});
    const auto [top, bottom] = std::minmax({p[0].y(), p[1].y(), p[2].y(), p[3].y()});
    return QRectF(QPointF(left, top), QPointF(right, bottom));
}

} // namespace

flows::FlowPoint canvas::snapped(double x, double y) {
    return {std::round(x / grid) * grid, std::round(y / grid) * grid};
}

FlowCurve FlowCurve::between(const flows::FlowPoint& from, const flows::FlowPoint& to) {
    const QRectF a = canvas::frame(from);
    const QRectF b = canvas::frame(to);
    const bool aside = b.left() >= a.right();
    if (!aside && (b.top() >= a.bottom() || b.bottom() <= a.top())) {
        const bool below = b.top() >= a.bottom();
        const QPointF start(a.center().x(), below ? a.bottom() : a.top());
        const QPointF end(b.center().x(), below ? b.top() : b.bottom());
        const QPointF bend(0, (below ? 1 : -1) * std::max(leastBend, std::abs(end.y() - start.y()) / 2));
        return {{start, start + bend, end - bend, end}};
    }
    const QPointF start(a.right(), a.center().y());
    const QPointF end(b.left(), b.center().y());
    const QPointF bend(std::max(leastBend, std::abs(end.x() - start.x()) / 2), 0);
    return {{start, start + bend, end - bend, end}};
}

QPointF FlowCurve::at(double t) const {
    const double u = 1 - t;
    return u * u * u * points[0] + 3 * u * u * t * points[1] + 3 * u * t * t * points[2] +
           t * t * t * points[3];
}

double FlowCurve::distance(QPointF point) const {
    double nearest = std::numeric_limits<double>::max();
    QPointF before = points[0];
    for (int i = 1; i <= samples; ++i) {
        const QPointF next = at(static_cast<double>(i) / samples);
        const QPointF along = next - before;
        const double length = QPointF::dotProduct(along, along);
        const double t =
            length == 0 ? 0 : std::clamp(QPointF::dotProduct(point - before, along) / length, 0.0, 1.0);
        const QPointF away = point - (before + t * along);
        nearest = std::min(nearest, std::hypot(away.x(), away.y()));
        before = next;
    }
    return nearest;
}

std::span<const RecordListModel<FlowNodeRow>::Role> FlowNodeRow::roles() {
    using Model = RecordListModel<FlowNodeRow>;
    static constexpr Model::Role table[]{
        Model::role<&FlowNodeRow::nodeId>("nodeId"),
        Model::role<&FlowNodeRow::nodeX>("nodeX"),
        Model::role<&FlowNodeRow::nodeY>("nodeY"),
        Model::role<&FlowNodeRow::kind>("kind"),
        Model::role<&FlowNodeRow::title>("title"),
        Model::role<&FlowNodeRow::detail>("detail"),
        Model::role<&FlowNodeRow::icon>("icon"),
        Model::role<&FlowNodeRow::state>("nodeState"),
        Model::role<&FlowNodeRow::stateText>("stateText"),
        Model::role<&FlowNodeRow::problemText>("problemText"),
        Model::role<&FlowNodeRow::planText>("planText"),
        Model::role<&FlowNodeRow::aim>("aim"),
        Model::role<&FlowNodeRow::selected>("selected"),
        Model::role<&FlowNodeRow::spoken>("spoken"),
    };
    return table;
}

std::span<const RecordListModel<FlowEdgeRow>::Role> FlowEdgeRow::roles() {
    using Model = RecordListModel<FlowEdgeRow>;
    static constexpr Model::Role table[]{
        Model::role<&FlowEdgeRow::edgeId>("edgeId"),
        {"start", pointOf<0>},
        {"bendStart", pointOf<1>},
        {"bendEnd", pointOf<2>},
        {"end", pointOf<3>},
        {"middle", middleOf},
        {"frame", frameOf},
        Model::role<&FlowEdgeRow::condition>("condition"),
        Model::role<&FlowEdgeRow::conditionTitle>("conditionTitle"),
        Model::role<&FlowEdgeRow::selected>("selected"),
        Model::role<&FlowEdgeRow::near>("near"),
        Model::role<&FlowEdgeRow::dim>("dim"),
        Model::role<&FlowEdgeRow::spoken>("spoken"),
    };
    return table;
}

std::span<const RecordListModel<FlowFieldRow>::Role> FlowFieldRow::roles() {
    using Model = RecordListModel<FlowFieldRow>;
    static constexpr Model::Role table[]{
        Model::role<&FlowFieldRow::fieldKey>("fieldKey"),
        Model::role<&FlowFieldRow::kind>("kind"),
        Model::role<&FlowFieldRow::title>("title"),
        Model::role<&FlowFieldRow::value>("value"),
        Model::role<&FlowFieldRow::options>("options"),
        Model::role<&FlowFieldRow::takesVariables>("takesVariables"),
    };
    return table;
}

std::span<const RecordListModel<FlowRunRow>::Role> FlowRunRow::roles() {
    using Model = RecordListModel<FlowRunRow>;
    static constexpr Model::Role table[]{
        Model::role<&FlowRunRow::runId>("runId"),
        Model::role<&FlowRunRow::outcome>("outcome"),
        Model::role<&FlowRunRow::outcomeTitle>("outcomeTitle"),
        Model::role<&FlowRunRow::timeText>("timeText"),
        Model::role<&FlowRunRow::triggerTitle>("triggerTitle"),
        Model::role<&FlowRunRow::durationText>("durationText"),
        Model::role<&FlowRunRow::shown>("shown"),
        Model::role<&FlowRunRow::canResume>("canResume"),
    };
    return table;
}

std::span<const RecordListModel<FlowRow>::Role> FlowRow::roles() {
    using Model = RecordListModel<FlowRow>;
    static constexpr Model::Role table[]{
        Model::role<&FlowRow::flowId>("flowId"),           Model::role<&FlowRow::name>("flowName"),
        Model::role<&FlowRow::startText>("startText"),     Model::role<&FlowRow::lastOutcome>("lastOutcome"),
        Model::role<&FlowRow::lastTitle>("lastTitle"),     Model::role<&FlowRow::lastTime>("lastTime"),
        Model::role<&FlowRow::problemText>("problemText"), Model::role<&FlowRow::from>("from"),
        Model::role<&FlowRow::running>("running"),
    };
    return table;
}

} // namespace vh::app
