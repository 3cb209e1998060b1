#pragma once

#include "Core/JobControl.h"
#include "Features/Flows/work/NodesExecutor.h"
#include "Platform/Process.h"

namespace vh::automation {

/// The work of the nodes that block, on this computer, each by its kind. It may throw, Cancelled too, and leaves the
/// seconds to the caller. Any thread.
class NodeWork {
public:
    struct Parts {
        const AutomationDependencies& dependencies;
        const ScheduledActions& actions;
        const ScriptLibrary& scripts;
        const mail::MailSender& mail;
    };
    NodeWork(const Parts& parts, const FlowRunContext& run, const flows::FlowStep& step,
             const CancelToken& cancel);

    flows::FlowNodeResult doTool(const FleetTool& tool) const;
    flows::FlowNodeResult doScript(const std::string& name) const;
    /// With the node as it was drawn: an entry that is the files alone stands for each of them.
    flows::FlowNodeResult doCopy(const flows::CopyNode& node) const;
    flows::FlowNodeResult doEmail(const flows::FlowEmail& email) const;

private:
    void report(std::string_view text) const;
    JobControl reporting() const;
    std::map<std::string, std::string> environment(std::string& input) const;
    flows::FlowNodeResult scriptResult(const ProcessResult& result) const;

    const Parts& parts_;
    const FlowRunContext& run_;
    const flows::FlowStep& step_;
    const CancelToken& cancel_;
    const Texts texts_;
};

} // namespace vh::automation
