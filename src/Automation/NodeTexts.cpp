#include "Automation/NodeTexts.h"

#include "Core/Printable.h"

#include <fmt/format.h>

namespace vh::automation {

std::string nodeTitle(const flows::FlowNode& node, const Texts& texts) {
    return node.title.empty() ? texts.text(fmt::format("nodes.kind.{}", caseName(node.kind)))
                              : printable(node.title);
}

std::string outcomeWord(flows::FlowNodeOutcome outcome, const Texts& texts) {
    if (outcome == flows::FlowNodeOutcome::skipped)
        return texts.text("nodes.outcome.skipped");
    return texts.text(fmt::format("outcome.{}", rawValue(outcome)));
}

std::string problemsText(const flows::Flow& flow, const std::vector<flows::FlowProblem>& problems,
                         const Texts& texts) {
    std::string text = printable(flow.name);
    std::string_view before = "common.colon";
    for (const flows::FlowProblem& problem : problems) {
        text += texts.text(before);
        before = "common.semicolon";
        if (const flows::FlowNode* node = problem.node ? flow.node(*problem.node) : nullptr)
            text += nodeTitle(*node, texts) + texts.text("common.colon");
        text += texts.text(fmt::format("nodes.problem.{}", problem.key()));
    }
    return text;
}

} // namespace vh::automation
