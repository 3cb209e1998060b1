#pragma once

#include "Core/Texts.h"
#include "Flows/Flow.h"
#include "Flows/FlowProblem.h"
#include "Flows/FlowRun.h"

#include <string>
#include <vector>

namespace vh::automation {

/// A node's own title, else its kind's.
std::string nodeTitle(const flows::FlowNode& node, const Texts& texts);
std::string outcomeWord(flows::FlowNodeOutcome outcome, const Texts& texts);
/// "Tidy up: No start; …"
std::string problemsText(const flows::Flow& flow, const std::vector<flows::FlowProblem>& problems,
                         const Texts& texts);

} // namespace vh::automation
