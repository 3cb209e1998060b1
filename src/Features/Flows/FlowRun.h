#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/Message.h"
#include "Core/RunRecord.h"
#include "Core/Uuid.h"
#include "Features/Flows/FlowValues.h"

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vh::flows {

struct Flow;

enum class FlowNodeOutcome { success, warning, failed, skipped, cancelled };

struct FlowNodeResult {
    FlowNodeOutcome outcome = FlowNodeOutcome::success;
    std::string summary; ///< one line for people
    std::string output;  ///< what a program printed
    double seconds = 0;
    Messages sentences = {}; ///< what the summary is made of, while the run lasts
    bool operator==(const FlowNodeResult&) const = default;
};
using FlowResults = std::map<Uuid, FlowNodeResult>;

struct FlowNodeRunning {
    bool operator==(const FlowNodeRunning&) const = default;
};
using FlowNodeState = std::variant<FlowNodeRunning, FlowNodeResult>;

/// A node that went before, with its result.
struct FlowInput {
    Uuid node;
    FlowNodeResult result;
};

/// What started a run. Raw values newer than this version read as by hand.
enum class FlowRunTrigger {
    manual,
    scheduled,
    agent,
    diskMounted,
    diskUnmounted,
    newFiles,
    shareMounted,
    launch,
    power,
    idle,
    afterFlow,
    external
};

struct FlowRun {
    Uuid id;
    Uuid flowID;
    Date startedAt;
    std::optional<Date> finishedAt;
    FlowRunTrigger trigger = FlowRunTrigger::manual;
    std::optional<std::string> event; ///< what fired it, for people
    std::optional<FlowValues> values; ///< what the variables stood for, when any had a value
    std::optional<Uuid> resumed;      ///< the run whose results it took over
    FlowResults results;

    /// How it went as a whole. A failure that an edge was drawn for counts as a warning.
    FlowNodeOutcome outcome(const Flow& flow) const;
};

/// The results that stay when a run is taken up again: nodes that did their work, and all before them did.
FlowResults resultsToKeep(const Flow& flow, const FlowResults& results);

/// For the run log; skipped and success are success.
Outcome logOutcome(FlowNodeOutcome outcome);
/// The trigger of the same raw value, `flow` when there is none.
Trigger logTrigger(FlowRunTrigger trigger);

} // namespace vh::flows

namespace vh {

template <>
inline constexpr auto describe<flows::FlowNodeOutcome> =
    enumeration<flows::FlowNodeOutcome>({{flows::FlowNodeOutcome::success, "success"},
                                         {flows::FlowNodeOutcome::warning, "warning"},
                                         {flows::FlowNodeOutcome::failed, "failed"},
                                         {flows::FlowNodeOutcome::skipped, "skipped"},
                                         {flows::FlowNodeOutcome::cancelled, "cancelled"}});
template <>
inline constexpr auto describe<flows::FlowNodeResult> = record(
    field("outcome", &flows::FlowNodeResult::outcome), field("summary", &flows::FlowNodeResult::summary),
    field("output", &flows::FlowNodeResult::output), field("seconds", &flows::FlowNodeResult::seconds));
template <>
inline constexpr auto describe<flows::FlowRunTrigger> =
    enumeration<flows::FlowRunTrigger>({{flows::FlowRunTrigger::manual, "manual"},
                                        {flows::FlowRunTrigger::scheduled, "scheduled"},
                                        {flows::FlowRunTrigger::agent, "agent"},
                                        {flows::FlowRunTrigger::diskMounted, "diskMounted"},
                                        {flows::FlowRunTrigger::diskUnmounted, "diskUnmounted"},
                                        {flows::FlowRunTrigger::newFiles, "newFiles"},
                                        {flows::FlowRunTrigger::shareMounted, "shareMounted"},
                                        {flows::FlowRunTrigger::launch, "launch"},
                                        {flows::FlowRunTrigger::power, "power"},
                                        {flows::FlowRunTrigger::idle, "idle"},
                                        {flows::FlowRunTrigger::afterFlow, "afterFlow"},
                                        {flows::FlowRunTrigger::external, "external"}})
        .otherwise(flows::FlowRunTrigger::manual);
template <>
inline constexpr auto describe<flows::FlowRun> =
    record(field("id", &flows::FlowRun::id), field("flowID", &flows::FlowRun::flowID),
           field("startedAt", &flows::FlowRun::startedAt), field("finishedAt", &flows::FlowRun::finishedAt),
           field("trigger", &flows::FlowRun::trigger), field("event", &flows::FlowRun::event),
           field("values", &flows::FlowRun::values), field("resumed", &flows::FlowRun::resumed),
           field("results", &flows::FlowRun::results));

} // namespace vh
