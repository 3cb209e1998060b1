#pragma once

#include "Core/Describe.h"
#include "Core/Schedule.h"
#include "Core/Uuid.h"
#include "Platform/MountWatcher.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vh::flows {

enum class FlowNodeOutcome;

using FlowVolume = VolumeFacts;

/// Which volumes start a flow.
struct FlowDiskMatch {
    enum class Rule { name, prefix, disk };
    enum class Scope { external, network, any };
    Rule rule = Rule::name;
    std::string value; ///< a name, its beginning, or a volume's UUID
    std::string label; ///< what a person sees for the volume of a UUID
    Scope scope = Scope::external;

    bool matches(const FlowVolume& volume) const;
    bool operator==(const FlowDiskMatch&) const = default;
};

/// Which network share starts a flow.
struct FlowShare {
    std::optional<Uuid> server; ///< a registered one
    std::string host;
    std::string name;

    bool matches(const std::optional<Uuid>& mountedServer, std::string_view mountedHost) const;
    bool operator==(const FlowShare&) const = default;
};

/// How a run must have ended.
enum class FlowFinish { any, success, warning, failed };

/// Skipped and cancelled count as no end at all.
bool accepts(FlowFinish when, FlowNodeOutcome outcome);

/// The end of which flow starts a flow.
struct FlowAfter {
    std::optional<Uuid> flow;
    std::string name;
    FlowFinish when = FlowFinish::any;
    bool operator==(const FlowAfter&) const = default;
};

struct OnSchedule {
    Schedule schedule = DailySchedule{9, 0};
    bool runIfMissed = false;
    bool operator==(const OnSchedule&) const = default;
};
struct OnDiskMounted {
    FlowDiskMatch match;
    bool operator==(const OnDiskMounted&) const = default;
};
struct OnDiskUnmounted {
    FlowDiskMatch match;
    bool operator==(const OnDiskUnmounted&) const = default;
};
struct OnNewFiles {
    std::string folder;
    std::vector<std::string> extensions; ///< lower-cased, without dots; none: every file
    int settle = 10;                     ///< seconds that a file must have kept its size
    bool operator==(const OnNewFiles&) const = default;
};
struct OnShareMounted {
    FlowShare share;
    bool operator==(const OnShareMounted&) const = default;
};
struct OnIdle {
    int minutes = 10;
    bool operator==(const OnIdle&) const = default;
};
struct OnFlowFinished {
    FlowAfter after;
    bool operator==(const OnFlowFinished&) const = default;
};
struct OnDemand {
    bool operator==(const OnDemand&) const = default;
};
struct OnLaunch {
    bool operator==(const OnLaunch&) const = default;
};
struct OnPower {
    bool operator==(const OnPower&) const = default;
};
struct OnExternal {
    bool operator==(const OnExternal&) const = default;
};

/// What starts a flow.
using FlowTrigger = std::variant<OnSchedule, OnDiskMounted, OnDiskUnmounted, OnNewFiles, OnShareMounted,
                                 OnIdle, OnFlowFinished, OnDemand, OnLaunch, OnPower, OnExternal>;

/// The kinds in the order in which a person chooses them.
enum class FlowTriggerKind {
    manual,
    schedule,
    diskMounted,
    diskUnmounted,
    newFiles,
    shareMounted,
    launch,
    power,
    idle,
    flowFinished,
    external
};
FlowTriggerKind kindOf(const FlowTrigger& trigger);
/// A trigger of the kind with empty fields.
FlowTrigger starting(FlowTriggerKind kind);

/// Whether the flow `flowID` can be started by it.
bool isFilledIn(const FlowTrigger& trigger, const Uuid& flowID);

/// "mov, .MXF" as a list: lower-cased, without leading dots and empty ones.
std::vector<std::string> extensionsOf(std::string_view text);
/// True for every path when the list is empty.
bool acceptsFile(std::string_view path, const std::vector<std::string>& extensions);

} // namespace vh::flows

namespace vh {

template <>
inline constexpr auto describe<flows::FlowDiskMatch::Rule> =
    enumeration<flows::FlowDiskMatch::Rule>({{flows::FlowDiskMatch::Rule::name, "name"},
                                             {flows::FlowDiskMatch::Rule::prefix, "prefix"},
                                             {flows::FlowDiskMatch::Rule::disk, "disk"}});
template <>
inline constexpr auto describe<flows::FlowDiskMatch::Scope> =
    enumeration<flows::FlowDiskMatch::Scope>({{flows::FlowDiskMatch::Scope::external, "external"},
                                              {flows::FlowDiskMatch::Scope::network, "network"},
                                              {flows::FlowDiskMatch::Scope::any, "any"}});
template <>
inline constexpr auto describe<flows::FlowDiskMatch> = record(field("rule", &flows::FlowDiskMatch::rule),
                                                              field("value", &flows::FlowDiskMatch::value),
                                                              field("label", &flows::FlowDiskMatch::label),
                                                              field("scope", &flows::FlowDiskMatch::scope));
template <>
inline constexpr auto describe<flows::FlowShare> = record(field("server", &flows::FlowShare::server),
                                                          field("host", &flows::FlowShare::host),
                                                          field("name", &flows::FlowShare::name));
template <>
inline constexpr auto
    describe<flows::FlowFinish> = enumeration<flows::FlowFinish>({{flows::FlowFinish::any, "any"},
                                                                  {flows::FlowFinish::success, "success"},
                                                                  {flows::FlowFinish::warning, "warning"},
                                                                  {flows::FlowFinish::failed, "failed"}});
template <>
inline constexpr auto describe<flows::FlowAfter> = record(field("flow", &flows::FlowAfter::flow),
                                                          field("name", &flows::FlowAfter::name),
                                                          field("when", &flows::FlowAfter::when));
template <>
inline constexpr auto describe<flows::OnSchedule> =
    record(field("_0", &flows::OnSchedule::schedule), field("runIfMissed", &flows::OnSchedule::runIfMissed));
template <>
inline constexpr auto describe<flows::OnDiskMounted> = record(field("_0", &flows::OnDiskMounted::match));
template <>
inline constexpr auto describe<flows::OnDiskUnmounted> = record(field("_0", &flows::OnDiskUnmounted::match));
template <>
inline constexpr auto describe<flows::OnNewFiles> = record(field("folder", &flows::OnNewFiles::folder),
                                                           field("extensions",
                                                                 &flows::OnNewFiles::extensions),
                                                           field("settle", &flows::OnNewFiles::settle));
template <>
inline constexpr auto describe<flows::OnShareMounted> = record(field("_0", &flows::OnShareMounted::share));
template <>
inline constexpr auto describe<flows::OnIdle> = record(field("minutes", &flows::OnIdle::minutes));
template <>
inline constexpr auto describe<flows::OnFlowFinished> = record(field("_0", &flows::OnFlowFinished::after));
template <>
inline constexpr auto describe<flows::FlowTrigger> =
    taggedUnion(unionCase<flows::OnSchedule>("schedule"), unionCase<flows::OnDiskMounted>("diskMounted"),
                unionCase<flows::OnDiskUnmounted>("diskUnmounted"), unionCase<flows::OnNewFiles>("newFiles"),
                unionCase<flows::OnShareMounted>("shareMounted"), unionCase<flows::OnIdle>("idle"),
                unionCase<flows::OnFlowFinished>("flowFinished"), unionCase<flows::OnDemand>("manual"),
                unionCase<flows::OnLaunch>("launch"), unionCase<flows::OnPower>("power"),
                unionCase<flows::OnExternal>("external"));
template <>
inline constexpr auto describe<flows::FlowTriggerKind> =
    enumeration<flows::FlowTriggerKind>({{flows::FlowTriggerKind::manual, "manual"},
                                         {flows::FlowTriggerKind::schedule, "schedule"},
                                         {flows::FlowTriggerKind::diskMounted, "diskMounted"},
                                         {flows::FlowTriggerKind::diskUnmounted, "diskUnmounted"},
                                         {flows::FlowTriggerKind::newFiles, "newFiles"},
                                         {flows::FlowTriggerKind::shareMounted, "shareMounted"},
                                         {flows::FlowTriggerKind::launch, "launch"},
                                         {flows::FlowTriggerKind::power, "power"},
                                         {flows::FlowTriggerKind::idle, "idle"},
                                         {flows::FlowTriggerKind::flowFinished, "flowFinished"},
                                         {flows::FlowTriggerKind::external, "external"}});

} // namespace vh
