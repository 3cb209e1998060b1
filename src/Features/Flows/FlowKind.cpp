#include "Features/Flows/Flow.h"

namespace vh::flows {

bool needsMac(const FlowNodeKind& kind) {
    return std::holds_alternative<ToolNode>(kind) || std::holds_alternative<RecipeNode>(kind) ||
           std::holds_alternative<SyncNode>(kind);
}

bool runsOnComputer(const FlowNodeKind& kind) {
    return needsMac(kind) || std::holds_alternative<ScriptNode>(kind) ||
           std::holds_alternative<InstallNode>(kind) || std::holds_alternative<CopyNode>(kind);
}

} // namespace vh::flows
