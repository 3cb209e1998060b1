#include "Features/Flows/work/NodesMail.h"

#include "Core/ActivityExport.h"
#include "Core/RunLog.h"
#include "Features/Flows/FlowExpansion.h"
#include "Features/Flows/FlowTexts.h"
#include "Features/Flows/work/NodeResults.h"
#include "Mail/MailSender.h"

#include <fmt/format.h>

namespace vh::automation {

namespace {

/// What went before, without the nodes that do no work.
std::vector<flows::FlowInput> worksBefore(const flows::FlowStep& step) {
    std::vector<flows::FlowInput> inputs = step.before();
    std::erase_if(inputs, [&](const flows::FlowInput& input) {
        const flows::FlowNode* node = step.flow.node(input.node);
        return !node || std::holds_alternative<flows::StartNode>(node->kind) ||
               std::holds_alternative<flows::ComputerNode>(node->kind);
    });
    return inputs;
}

} // namespace

flows::FlowNodeResult NodesMail::send(const flows::FlowEmail& email, const flows::FlowStep& step,
                                      Date runStartedAt, const CancelToken& cancel) const {
    const Texts texts = dependencies_.texts();
    if (!sender_.isReady())
        return failure({"nodes.fail.no-mail", {}}, texts);
    mail::MailMessage message{email.recipients, email.subject, email.body, {}};
    if (email.includeSummary) {
        if (!message.body.empty())
            message.body += "\n\n";
        message.body += flows::summaryOf(
            worksBefore(step), step.flow,
            [&](const flows::FlowNode& node) { return flows::titleOf(node, texts); },
            [&](flows::FlowNodeOutcome outcome) { return flows::outcomeTitle(outcome, texts); },
            texts.text("common.colon"));
    }
    if (email.attachLog) {
        // Records have whole seconds.
        const Date since = std::chrono::floor<std::chrono::seconds>(runStartedAt);
        const ActivityExport table{texts, std::string(code(texts.language())), dependencies_.calendar};
        message.attachments.push_back(
            {attachmentName(step.flow.name, dependencies_.clock(), dependencies_.calendar), "text/csv",
             table.csv(dependencies_.runs.log.since(since))});
    }
    return resultOf(sender_.send(message, Trigger::flow, cancel, {{RunDetail::flow, step.flow.name}}));
}

std::string attachmentName(std::string_view flowName, Date date, const LocalCalendar& calendar) {
    constexpr std::string_view unsafe = "/\\:*?\"<>|";
    std::string name(flowName);
    for (char& c : name)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f || unsafe.find(c) != std::string_view::npos)
            c = '-';
    const WallTime t = calendar.wallTime(date);
    return fmt::format("{} {:04}-{:02}-{:02} {:02}-{:02}.csv", name, t.year, t.month, t.day, t.hour,
                       t.minute);
}

} // namespace vh::automation
