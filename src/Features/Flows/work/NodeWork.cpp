#include "Features/Flows/work/NodeWork.h"

#include "Automation/ScheduledActions.h"
#include "Automation/ScriptLibrary.h"
#include "Core/ErrorMessage.h"
#include "Core/FleetFolder.h"
#include "Core/Printable.h"
#include "Core/Throttle.h"
#include "Core/ToolTexts.h"
#include "Features/Flows/work/NodeResults.h"
#include "Features/Flows/work/NodesMail.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"

#include <chrono>

namespace vh::automation {

using flows::FlowNodeOutcome;
using flows::FlowNodeResult;

namespace {

constexpr size_t keptOutput = 256u << 10;
/// The system refuses variables beyond 128 KiB.
constexpr size_t longestVariable = 96u << 10;
/// How often a node says at most what it is doing.
constexpr std::chrono::milliseconds reportPause{200};

struct ToolCall {
    ScheduledAction action;
    std::map<std::string, std::string> payload;
};

std::string commaList(const std::vector<std::string>& items) {
    std::string list;
    for (const std::string& item : items)
        list += (list.empty() ? "" : ",") + item;
    return list;
}

/// The scheduled action that does what the tool does; nothing for tools that no action has.
std::optional<ToolCall> callOf(const FleetTool& tool) {
    if (std::holds_alternative<OptimizeTool>(tool))
        return ToolCall{ScheduledAction::optimize, {}};
    if (std::holds_alternative<CleanStorageTool>(tool))
        return ToolCall{ScheduledAction::cleanStorage, {}};
    if (std::holds_alternative<CleanPrivacyTool>(tool))
        return ToolCall{ScheduledAction::cleanPrivacy, {}};
    if (std::holds_alternative<SmartHealthTool>(tool))
        return ToolCall{ScheduledAction::smartHealth, {}};
    if (std::holds_alternative<BackupTool>(tool))
        return ToolCall{ScheduledAction::backup, {}};
    if (const auto* maintenance = std::get_if<MaintenanceTool>(&tool))
        return ToolCall{ScheduledAction::maintenance, {{"tasks", commaList(maintenance->tasks)}}};
    if (const auto* sync = std::get_if<FolderSyncTool>(&tool))
        return ToolCall{ScheduledAction::folderSync,
                        {{"source", sync->source},
                         {"destination", sync->destination},
                         {"delete", sync->deleteExtraneous ? "true" : "false"}}};
    return std::nullopt;
}

std::string lines(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += item + "\n";
    return text;
}

/// The last line that a program printed so far.
std::string_view lastLine(std::string_view piece) {
    while (piece.ends_with('\n') || piece.ends_with('\r'))
        piece.remove_suffix(1);
    return piece.substr(piece.find_last_of("\n\r") + 1);
}

} // namespace

NodeWork::NodeWork(const Parts& parts, const FlowRunContext& run, const flows::FlowStep& step,
                   const CancelToken& cancel)
    : parts_(parts), run_(run), step_(step), cancel_(cancel), texts_(parts.dependencies.texts()) {}

void NodeWork::report(std::string_view text) const {
    if (run_.report)
        run_.report(step_.node.id, printable(text));
}

FlowNodeResult NodeWork::doTool(const FleetTool& tool) const {
    auto call = callOf(tool);
    if (!call)
        return failure({"nodes.fail.no-tool", {{"tool", toolName(texts_, toolID(tool))}}}, texts_);
    const ActionRequest request{.toolID = std::string(toolID(tool)),
                                .payload = std::move(call->payload),
                                .trigger = Trigger::flow,
                                .details = {{RunDetail::flow, step_.flow.name}}};
    return resultOf(parts_.actions.run(call->action, request, reporting()));
}

JobControl NodeWork::reporting() const {
    return {cancel_, [this](double, std::string_view what) {
                report(what);
            }};
}

std::map<std::string, std::string> NodeWork::environment(std::string& input) const {
    const flows::FlowValues& values = run_.values;
    std::map<std::string, std::string> variables{{"VARNHOLT_FLOW", step_.flow.name}};
    if (values.files) {
        input = lines(*values.files);
        if (input.size() <= longestVariable)
            variables["VARNHOLT_FILES"] = input.substr(0, input.size() - (input.empty() ? 0 : 1));
    }
    if (values.folder)
        variables["VARNHOLT_FOLDER"] = *values.folder;
    if (values.disk)
        variables["VARNHOLT_DISK"] = *values.disk;
    if (values.diskName)
        variables["VARNHOLT_DISK_NAME"] = *values.diskName;
    return variables;
}

FlowNodeResult NodeWork::doScript(const std::string& name) const {
    const auto script = parts_.scripts.script(name);
    if (!script)
        return failure({"nodes.fail.no-script", {{"name", printable(name)}}}, texts_);
    if (script->isSystem)
        return failure({"nodes.fail.script-system", {{"name", printable(name)}}}, texts_);
    ProcessRequest request = ScriptLibrary::requestFor(parts_.scripts.pathOf(name));
    request.environment = environment(request.input);
    request.folder = parts_.dependencies.folders.home;
    request.output = ProcessOutput::combined;
    request.endsWithParent = true; // else its flow could run beside it after a kill
    request.maxOutputBytes = keptOutput + 1;
    Throttle reports(reportPause);
    request.onOutput = [&](std::string_view piece) {
        if (reports.isDue())
            report(lastLine(piece));
    };
    return scriptResult(runProcess(request, cancel_));
}

FlowNodeResult NodeWork::scriptResult(const ProcessResult& result) const {
    std::string output = result.output;
    if (output.size() > keptOutput)
        output = output.substr(0, keptOutput) + "\n" + texts_.text("nodes.script.cut");
    switch (result.end) {
    case ProcessEnd::cancelled:
        return nodeResult(FlowNodeOutcome::cancelled, {"nodes.stopped", {}}, texts_, std::move(output));
    case ProcessEnd::exited:
        return nodeResult(result.status == 0 ? FlowNodeOutcome::success : FlowNodeOutcome::failed,
                          {"nodes.script.exit", {{"code", result.status}}}, texts_, std::move(output));
    case ProcessEnd::signalled:
    case ProcessEnd::timedOut:
        break;
    }
    return failure({"nodes.script.signal", {{"signal", result.status}}}, texts_, std::move(output));
}

FlowNodeResult NodeWork::doCopy(const flows::CopyNode& node) const {
    const std::string folder = pathOf(node.folder, parts_.dependencies.folders);
    std::vector<std::string> sources = run_.values.expandList({node.path});
    for (std::string& source : sources)
        if (source == "~" || source.starts_with("~/"))
            source = parts_.dependencies.folders.home + source.substr(1);
    if (sources.empty())
        return failure({"nodes.fail.no-file", {{"path", node.path}}}, texts_);
    for (const std::string& source : sources)
        if (!statusOf(source))
            return failure({"nodes.fail.no-file", {{"path", printable(source)}}}, texts_);
    const ActionRequest request{.toolID = "fast-copy",
                                .payload = {{"folder", folder}},
                                .trigger = Trigger::flow,
                                .details = {{RunDetail::flow, step_.flow.name}},
                                .sources = std::move(sources)};
    return resultOf(parts_.actions.run(copyAction, request, reporting()));
}

FlowNodeResult NodeWork::doEmail(const flows::FlowEmail& email) const {
    return NodesMail(parts_.dependencies, parts_.mail).send(email, step_, run_.startedAt, cancel_);
}

} // namespace vh::automation
