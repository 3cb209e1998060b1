#include "Features/Flows/FlowExpansion.h"

#include <type_traits>

namespace vh::flows {

namespace {

using TextList = std::vector<std::string>;

/// Calls `take` with every text, and every list of texts, that is the person's own.
struct OwnTexts {
    template <class Node, class Take>
    static void visit(Node& node, const Take& take) {
        using T = std::remove_const_t<Node>;
        if constexpr (std::is_same_v<T, ToolNode>)
            std::visit([&](auto& tool) { ofTool(tool, take); }, node.tool);
        else if constexpr (std::is_same_v<T, ScriptNode>)
            take(node.name);
        else if constexpr (std::is_same_v<T, InstallNode>)
            take(node.entries);
        else if constexpr (std::is_same_v<T, SyncNode>)
            take(node.source), take(node.destination);
        else if constexpr (std::is_same_v<T, CopyNode>)
            take(node.path);
        else if constexpr (std::is_same_v<T, AgentNode>)
            take(node.prompt);
        else if constexpr (std::is_same_v<T, NotifyNode>)
            take(node.message);
        else if constexpr (std::is_same_v<T, EmailNode>)
            take(node.email.subject), take(node.email.body);
    }

    /// Passwords are optional and presets are bytes: what is a plain text is a person's.
    template <class Tool, class Take>
    static void ofTool(Tool& tool, const Take& take) {
        const auto takeIfText = [&]<class Value>(Value& value) {
            using T = std::remove_const_t<Value>;
            if constexpr (std::is_same_v<T, std::string> || std::is_same_v<T, TextList>)
                take(value);
        };
        if constexpr (DescribedRecord<std::remove_const_t<Tool>>)
            std::apply([&](const auto&... field) { (takeIfText(tool.*field.member), ...); },
                       describe<std::remove_const_t<Tool>>.fields);
    }
};

struct Expand {
    const FlowValues& values;
    void operator()(std::string& text) const { text = values.expand(text); }
    void operator()(TextList& list) const { list = values.expandList(list); }
};

struct Collect {
    TextList& texts;
    void operator()(const std::string& text) const { texts.push_back(text); }
    void operator()(const TextList& list) const { texts.insert(texts.end(), list.begin(), list.end()); }
};

} // namespace

std::vector<std::string> textsOf(const FlowNodeKind& kind) {
    TextList texts;
    std::visit([&](const auto& node) { OwnTexts::visit(node, Collect{texts}); }, kind);
    return texts;
}

FlowNodeKind expanding(const FlowNodeKind& kind, const FlowValues& values) {
    FlowNodeKind copy = kind;
    std::visit([&](auto& node) { OwnTexts::visit(node, Expand{values}); }, copy);
    return copy;
}

FleetTool expanding(const FleetTool& tool, const FlowValues& values) {
    FleetTool copy = tool;
    std::visit([&](auto& each) { OwnTexts::ofTool(each, Expand{values}); }, copy);
    return copy;
}

std::string summaryOf(const std::vector<FlowInput>& inputs, const Flow& flow,
                      const std::function<std::string(const FlowNode&)>& title,
                      const std::function<std::string(FlowNodeOutcome)>& outcome, std::string_view colon) {
    std::string summary;
    for (const FlowInput& input : inputs) {
        const FlowNode* node = flow.node(input.node);
        if (!node)
            continue;
        if (!summary.empty())
            summary += '\n';
        summary += title(*node) + std::string(colon) + outcome(input.result.outcome);
        if (!input.result.summary.empty())
            summary += ". " + input.result.summary;
    }
    return summary;
}

} // namespace vh::flows
