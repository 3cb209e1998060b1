#include "Features/Flows/work/NodesExecutor.h"

#include "Core/ByteFormat.h"
#include "Core/FleetFolder.h"
#include "Core/Printable.h"
#include "Core/ToolTexts.h"

#include <fmt/format.h>

namespace vh::automation {

using namespace flows;

namespace {

std::string listText(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ", ") + item;
    return printable(text);
}

/// What the texts of the "nodes.plan." family say about each kind.
struct PlanArguments {
    const AutomationDependencies& dependencies;
    const Texts& texts;
    using List = std::vector<TextArgument>;

    List operator()(const StartNode&) const { return {}; }
    List operator()(const ComputerNode& node) const {
        const auto* machine = std::get_if<FlowMachine>(&node.computer);
        return {{"computer", machine ? printable(machine->label) : texts.text("nodes.this-computer")}};
    }
    List operator()(const ToolNode& node) const { return {{"tool", toolName(texts, toolID(node.tool))}}; }
    List operator()(const ScriptNode& node) const { return {{"name", printable(node.name)}}; }
    List operator()(const InstallNode& node) const { return {{"entries", listText(node.entries)}}; }
    List operator()(const RecipeNode&) const { return {}; }
    List operator()(const SyncNode& node) const {
        return {{"source", printable(node.source)}, {"destination", printable(node.destination)}};
    }
    List operator()(const CopyNode& node) const {
        return {{"path", printable(node.path)},
                {"folder", printable(pathOf(node.folder, dependencies.folders))}};
    }
    List operator()(const AgentNode& node) const { return {{"prompt", printable(node.prompt)}}; }
    List operator()(const WaitNode& node) const {
        return {{"duration", durationText(static_cast<double>(node.seconds), texts.language())}};
    }
    List operator()(const NotifyNode& node) const { return {{"message", printable(node.message)}}; }
    List operator()(const EmailNode& node) const {
        return {{"recipients", listText(node.email.recipients)}, {"subject", printable(node.email.subject)}};
    }
};

} // namespace

std::string planText(const AutomationDependencies& dependencies, const FlowNodeKind& kind,
                     const Texts& texts) {
    return texts.text(fmt::format("nodes.plan.{}", caseName(kind)),
                      std::visit(PlanArguments{dependencies, texts}, kind));
}

} // namespace vh::automation
