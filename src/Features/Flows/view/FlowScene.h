#pragma once

#include "Features/Flows/FlowProblem.h"
#include "Features/Flows/FlowRun.h"
#include "Features/Flows/view/FlowRows.h"
#include "Features/Flows/view/FlowWords.h"

#include <map>
#include <optional>
#include <unordered_map>
#include <vector>

namespace vh::app {

/// What is shown of a flow besides itself.
struct FlowSceneState {
    std::vector<flows::FlowProblem> problems;
    std::map<Uuid, flows::FlowNodeState> states;
    std::map<Uuid, std::string> progress;
    std::map<Uuid, std::string> plan;
    std::optional<Uuid> selected; ///< a node or an edge
    std::optional<Uuid> connectFrom;
    std::optional<Uuid> aimedAt;
};

/// Makes the rows of the canvas. Words of nodes that did not change are kept.
class FlowScene {
public:
    std::vector<FlowNodeRow> nodes(const flows::Flow& flow, const FlowSceneState& state,
                                   const FlowWords& words);
    std::vector<FlowEdgeRow> edges(const flows::Flow& flow, const FlowSceneState& state,
                                   const FlowWords& words);
    /// For another language.
    void forgetWords() { said_.clear(); }

    /// "running", or how it ended; empty for none.
    static QString stateName(const flows::FlowNodeState* state);

private:
    struct Said {
        flows::FlowNode node;
        QString title;
        QString detail;
        QString icon;
    };
    const Said& said(const flows::FlowNode& node, const FlowWords& words);

    std::unordered_map<Uuid, Said> said_;
};

/// The node that a person means who goes from `node` in a direction ("left", "right", "up", "down"): one that an edge
/// leads to that way, else the nearest. Nothing when there is none.
std::optional<Uuid> neighbour(const flows::Flow& flow, const Uuid& node, const QString& direction);
/// The node, or else the edge no further than `reach`, at a point of the canvas.
std::optional<Uuid> nodeAt(const flows::Flow& flow, QPointF point);
std::optional<Uuid> edgeAt(const flows::Flow& flow, QPointF point, double reach);
/// The first free place for a node from a point down.
flows::FlowPoint freePlace(const flows::Flow& flow, flows::FlowPoint wanted);
/// Around all nodes; empty for none.
QRectF boundsOf(const flows::Flow& flow);

} // namespace vh::app
