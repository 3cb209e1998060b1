#pragma once

#include "Features/Flows/Flow.h"
#include "Features/Flows/FlowFields.h"
#include "Features/Flows/FlowTrigger.h"
#include "Features/Flows/view/FlowRows.h"
#include "Features/Flows/view/FlowWords.h"

#include <functional>
#include <string>
#include <vector>

namespace vh::app {

/// What fields can be filled with that a flow does not know itself; each is asked only for a field that needs it.
struct FlowFieldSources {
    std::function<std::vector<std::string>()> scripts; ///< names
    std::function<std::vector<flows::FlowVolume>()> volumes;
    std::function<std::vector<flows::Flow>()> flows;
};

/// What there is to fill in on a node of the flow.
std::vector<FlowFieldRow> fieldRows(const flows::FlowNode& node, const flows::Flow& flow,
                                    const FlowWords& words, const FlowFieldSources& sources);

/// [{token, title}] of the variables that have a value when the flow runs as it is meant to.
QVariantList variableOptions(const flows::Flow& flow, const FlowWords& words);

} // namespace vh::app
