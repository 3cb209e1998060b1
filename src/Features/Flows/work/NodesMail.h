#pragma once

#include "Automation/AutomationWorld.h"
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
    NodesMail(const AutomationWorld& world, const mail::MailSender& sender)
        : world_(world), sender_(sender) {}

    flows::FlowNodeResult send(const flows::FlowEmail& email, const flows::FlowStep& step, Date runStartedAt,
                               const CancelToken& cancel) const;

private:
    const AutomationWorld& world_;
    const mail::MailSender& sender_;
};

/// "Tidy up 2026-11-22 20-18.csv": safe as a file's name on every system.
std::string attachmentName(std::string_view flowName, Date date, const LocalCalendar& calendar);

} // namespace vh::automation
