#include "Features/Flows/FlowTexts.h"

#include "Core/Printable.h"
#include "Core/ToolTexts.h"

#include <fmt/format.h>

namespace vh::flows {

std::string kindTitle(std::string_view kind, const Texts& texts) {
    return texts.text(fmt::format("nodes.kind.{}", kind));
}

std::string titleOf(const FlowNode& node, const Texts& texts) {
    if (!node.title.empty())
        return printable(node.title);
    if (const auto* start = std::get_if<StartNode>(&node.kind))
        return triggerTitle(kindOf(start->trigger), texts);
    if (const auto* tool = std::get_if<ToolNode>(&node.kind))
        return toolTitle(tool->tool, texts);
    if (const auto* computer = std::get_if<ComputerNode>(&node.kind))
        if (const auto* machine = std::get_if<FlowMachine>(&computer->computer))
            return printable(machine->label.empty() ? machine->id : machine->label);
    return kindTitle(caseName(node.kind), texts);
}

std::string toolTitle(const FleetTool& tool, const Texts& texts) {
    // Of two things that one tool does, the second has a name of its own.
    if (std::holds_alternative<DuplicatesTool>(tool))
        return texts.text("nodes.tool.duplicates");
    if (std::holds_alternative<FindFilesTool>(tool))
        return texts.text("nodes.tool.find-files");
    return toolName(texts, toolID(tool));
}

std::string triggerTitle(FlowTriggerKind kind, const Texts& texts) {
    // The run log's names of the same things.
    const std::string_view raw = kind == FlowTriggerKind::schedule       ? "scheduled"
                                 : kind == FlowTriggerKind::flowFinished ? "afterFlow"
                                                                         : rawValue(kind);
    return texts.text(fmt::format("trigger.{}", raw));
}

std::string outcomeTitle(FlowNodeOutcome outcome, const Texts& texts) {
    if (outcome == FlowNodeOutcome::skipped)
        return texts.text("nodes.outcome.skipped");
    return texts.text(fmt::format("outcome.{}", rawValue(outcome)));
}

std::string problemText(const FlowProblem& problem, const Texts& texts) {
    return texts.text(fmt::format("nodes.problem.{}", problem.key()));
}

std::string problemsText(const Flow& flow, const std::vector<FlowProblem>& problems, const Texts& texts) {
    std::string text = printable(flow.name);
    std::string_view before = "common.colon";
    for (const FlowProblem& problem : problems) {
        text += texts.text(before);
        before = "common.semicolon";
        if (const FlowNode* node = problem.node ? flow.node(*problem.node) : nullptr)
            text += titleOf(*node, texts) + texts.text("common.colon");
        text += problemText(problem, texts);
    }
    return text;
}

} // namespace vh::flows
