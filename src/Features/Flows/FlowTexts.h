#pragma once

#include "Core/Texts.h"
#include "Features/Flows/Flow.h"
#include "Features/Flows/FlowProblem.h"
#include "Features/Flows/FlowRun.h"

#include <string>
#include <string_view>
#include <vector>

/// What flows and their parts are called, for people. Any thread.
namespace vh::flows {

/// Of a kind by the name of its case, such as "copy".
std::string kindTitle(std::string_view kind, const Texts& texts);
/// A node's own title, else what its kind is called: a start by its trigger, a tool by its name.
std::string titleOf(const FlowNode& node, const Texts& texts);
std::string toolTitle(const FleetTool& tool, const Texts& texts);
std::string triggerTitle(FlowTriggerKind kind, const Texts& texts);
std::string outcomeTitle(FlowNodeOutcome outcome, const Texts& texts);
std::string problemText(const FlowProblem& problem, const Texts& texts);
/// "Tidy up: Copy: Something is still missing.; …"
std::string problemsText(const Flow& flow, const std::vector<FlowProblem>& problems, const Texts& texts);

} // namespace vh::flows
