#include "Features/Flows/work/NodesExecutor.h"

#include "Core/Printable.h"
#include "Features/Flows/work/NodeResults.h"

namespace vh::automation {

using namespace flows;

FlowNodeResult FlowOutpost::run(const FlowStep& step, const FlowNodeKind& expanded, const Texts& texts,
                                const CancelToken&) {
    const auto* machine = std::get_if<FlowMachine>(&step.computer);
    if (machine && runsOnComputer(expanded))
        return failure({"nodes.fail.not-in-company", {{"computer", printable(machine->label)}}}, texts);
    if (const auto* install = std::get_if<InstallNode>(&expanded))
        return failure({install->entries.empty() ? "nodes.fail.no-entries" : "nodes.fail.no-catalog", {}},
                       texts);
    if (std::holds_alternative<RecipeNode>(expanded))
        return failure({"nodes.fail.no-recipe", {}}, texts);
    if (std::holds_alternative<AgentNode>(expanded))
        return failure({"nodes.fail.no-model", {}}, texts);
    return failure({"nodes.fail.nothing-sent", {}}, texts);
}

} // namespace vh::automation
