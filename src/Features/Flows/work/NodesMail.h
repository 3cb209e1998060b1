#pragma once

#include "Automation/AutomationDependencies.h"
#include "Features/Flows/FlowExecutor.h"

#include <string>
#include <string_view>

namespace vh::mail {
class MailSender;
}

namespace vh::automation {

/// Sends a node's mail; its texts are filled in. With what went before under the body, or the log of the run as a
/// table beside it, where it is asked for. Blocks; any thread.
class NodesMail {
public:
    NodesMail(const AutomationDependencies& dependencies, const mail::MailSender& sender)
        : dependencies_(dependencies), sender_(sender) {}

    flows::FlowNodeResult send(const flows::FlowEmail& email, const flows::FlowStep& step, Date runStartedAt,
                               const CancelToken& cancel) const;

private:
    const AutomationDependencies& dependencies_;
    const mail::MailSender& sender_;
};

/// "Tidy up 2026-11-22 20-18.csv": safe as a file's name on every system.
std::string attachmentName(std::string_view flowName, Date date, const LocalCalendar& calendar);

} // namespace vh::automation
