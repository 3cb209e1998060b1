#pragma once

#include "Core/FleetTool.h"
#include "Features/Flows/Flow.h"
#include "Features/Flows/FlowRun.h"
#include "Features/Flows/FlowValues.h"

#include <functional>

namespace vh::flows {

/// A copy with its variables filled in; lists may grow by the files. Throws NoValue.
FlowNodeKind expanding(const FlowNodeKind& kind, const FlowValues& values);
FleetTool expanding(const FleetTool& tool, const FlowValues& values);

/// One line an input: title, `colon`, outcome word and the summary where there is one.
std::string summaryOf(const std::vector<FlowInput>& inputs, const Flow& flow,
                      const std::function<std::string(const FlowNode&)>& title,
                      const std::function<std::string(FlowNodeOutcome)>& outcome, std::string_view colon);

} // namespace vh::flows
