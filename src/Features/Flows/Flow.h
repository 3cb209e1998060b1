#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/FleetFolder.h"
#include "Core/FleetTool.h"
#include "Core/Uuid.h"
#include "Features/Flows/FlowTrigger.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vh::flows {

/// Where a node stands on the canvas.
struct FlowPoint {
    double x = 0;
    double y = 0;
    bool operator==(const FlowPoint&) const = default;
};

struct FlowMachine {
    std::string id;
    std::string label;
    bool isMac = true;
    bool operator==(const FlowMachine&) const = default;
};
struct ThisMac {
    bool operator==(const ThisMac&) const = default;
};
/// Where work happens.
using FlowComputer = std::variant<FlowMachine, ThisMac>;

struct FlowEmail {
    std::vector<std::string> recipients;
    std::string subject;
    std::string body;
    bool includeSummary = false;
    bool attachLog = false;

    std::vector<std::string> invalidRecipients() const;
    bool operator==(const FlowEmail&) const = default;
};

struct StartNode {
    FlowTrigger trigger = OnDemand{};
    bool operator==(const StartNode&) const = default;
};
struct ComputerNode {
    FlowComputer computer = ThisMac{};
    bool operator==(const ComputerNode&) const = default;
};
struct ToolNode {
    FleetTool tool;
    bool operator==(const ToolNode&) const = default;
};
struct ScriptNode {
    std::string name;
    bool operator==(const ScriptNode&) const = default;
};
struct InstallNode {
    std::vector<std::string> entries;
    bool operator==(const InstallNode&) const = default;
};
struct RecipeNode {
    Uuid id;
    bool operator==(const RecipeNode&) const = default;
};
struct SyncNode {
    std::string source;
    std::optional<Uuid> destinationNode;
    std::string destination;
    bool deleteExtraneous = false;
    bool operator==(const SyncNode&) const = default;
};
struct CopyNode {
    std::string path;
    FleetFolder folder = FleetFolder::downloads;
    bool operator==(const CopyNode&) const = default;
};
struct AgentNode {
    std::string prompt;
    std::optional<Uuid> profile;
    bool operator==(const AgentNode&) const = default;
};
struct WaitNode {
    int64_t seconds = 60;
    bool operator==(const WaitNode&) const = default;
};
struct NotifyNode {
    std::string message;
    bool operator==(const NotifyNode&) const = default;
};
struct EmailNode {
    FlowEmail email;
    bool operator==(const EmailNode&) const = default;
};

using FlowNodeKind = std::variant<StartNode, ComputerNode, ToolNode, ScriptNode, InstallNode, RecipeNode,
                                  SyncNode, CopyNode, AgentNode, WaitNode, NotifyNode, EmailNode>;

/// Tools, recipes and syncs run only where this program does.
bool needsMac(const FlowNodeKind& kind);
/// Whether it happens on a computer, and so one after the other there.
bool runsOnComputer(const FlowNodeKind& kind);
/// Every text of the person's, in which variables may stand.
std::vector<std::string> textsOf(const FlowNodeKind& kind);

struct FlowNode {
    Uuid id;
    FlowNodeKind kind;
    FlowPoint position;
    std::string title; ///< empty: the kind's own
    bool operator==(const FlowNode&) const = default;
};

struct FlowEdge {
    enum class Condition { always, success, failure };
    Uuid id;
    Uuid from;
    Uuid to;
    Condition condition = Condition::always;
    bool operator==(const FlowEdge&) const = default;
};

/// A directed graph that says what starts it, where work happens, what is done and which result lets the next go.
struct Flow {
    Uuid id;
    std::string name;
    std::vector<FlowNode> nodes;
    std::vector<FlowEdge> edges;
    Date updatedAt;

    /// A start node by hand and this computer, joined.
    static Flow blank(std::string name, Date now);

    const FlowNode* node(const Uuid& nodeID) const;
    FlowNode* node(const Uuid& nodeID);
    /// The trigger of the first start node.
    const FlowTrigger* start() const;
    std::vector<FlowEdge> inputs(const Uuid& nodeID) const;  ///< in list order
    std::vector<FlowEdge> outputs(const Uuid& nodeID) const; ///< in list order
    std::set<Uuid> ancestors(const Uuid& nodeID) const;
    /// A node reaches itself.
    bool reaches(const Uuid& from, const Uuid& to) const;
    /// The computers that a node would work on, in the order in which they are found on the way up.
    std::vector<FlowComputer> computers(const Uuid& nodeID) const;
    /// The only one of them, else this computer.
    FlowComputer computer(const Uuid& nodeID) const;

    bool canConnect(const Uuid& from, const Uuid& to) const;
    /// Nothing when they cannot be connected.
    std::optional<FlowEdge> connect(const Uuid& from, const Uuid& to, FlowEdge::Condition when);
    /// Removes the nodes with their edges, and edges that are named.
    void remove(const std::set<Uuid>& ids);

    /// The same flow under fresh identifiers, its own included.
    Flow renewed() const;

    bool operator==(const Flow&) const = default;
};

} // namespace vh::flows

namespace vh {

template <>
inline constexpr auto describe<flows::FlowPoint> = record(field("x", &flows::FlowPoint::x),
                                                          field("y", &flows::FlowPoint::y));
template <>
inline constexpr auto describe<flows::FlowMachine> = record(field("id", &flows::FlowMachine::id),
                                                            field("label", &flows::FlowMachine::label),
                                                            field("isMac", &flows::FlowMachine::isMac));
template <>
inline constexpr auto describe<flows::FlowComputer> = taggedUnion(unionCase<flows::FlowMachine>("machine"),
                                                                  unionCase<flows::ThisMac>("thisMac"));
template <>
inline constexpr auto describe<flows::FlowEmail> =
    record(field("recipients", &flows::FlowEmail::recipients), field("subject", &flows::FlowEmail::subject),
           field("body", &flows::FlowEmail::body), field("includeSummary", &flows::FlowEmail::includeSummary),
           field("attachLog", &flows::FlowEmail::attachLog));
template <>
inline constexpr auto describe<flows::StartNode> = record(field("_0", &flows::StartNode::trigger));
template <>
inline constexpr auto describe<flows::ComputerNode> = record(field("_0", &flows::ComputerNode::computer));
template <>
inline constexpr auto describe<flows::ToolNode> = record(field("_0", &flows::ToolNode::tool));
template <>
inline constexpr auto describe<flows::ScriptNode> = record(field("name", &flows::ScriptNode::name));
template <>
inline constexpr auto describe<flows::InstallNode> = record(field("entries", &flows::InstallNode::entries));
template <>
inline constexpr auto describe<flows::RecipeNode> = record(field("id", &flows::RecipeNode::id));
template <>
inline constexpr auto
    describe<flows::SyncNode> = record(field("source", &flows::SyncNode::source),
                                       field("destinationNode", &flows::SyncNode::destinationNode),
                                       field("destination", &flows::SyncNode::destination),
                                       field("deleteExtraneous", &flows::SyncNode::deleteExtraneous));
template <>
inline constexpr auto describe<flows::CopyNode> = record(field("path", &flows::CopyNode::path),
                                                         field("folder", &flows::CopyNode::folder));
template <>
inline constexpr auto describe<flows::AgentNode> = record(field("prompt", &flows::AgentNode::prompt),
                                                          field("profile", &flows::AgentNode::profile));
template <>
inline constexpr auto describe<flows::WaitNode> = record(field("seconds", &flows::WaitNode::seconds));
template <>
inline constexpr auto describe<flows::NotifyNode> = record(field("message", &flows::NotifyNode::message));
template <>
inline constexpr auto describe<flows::EmailNode> = record(field("_0", &flows::EmailNode::email));
template <>
inline constexpr auto describe<flows::FlowNodeKind> =
    taggedUnion(unionCase<flows::StartNode>("start"), unionCase<flows::ComputerNode>("computer"),
                unionCase<flows::ToolNode>("tool"), unionCase<flows::ScriptNode>("script"),
                unionCase<flows::InstallNode>("install"), unionCase<flows::RecipeNode>("recipe"),
                unionCase<flows::SyncNode>("sync"), unionCase<flows::CopyNode>("copy"),
                unionCase<flows::AgentNode>("agent"), unionCase<flows::WaitNode>("wait"),
                unionCase<flows::NotifyNode>("notify"), unionCase<flows::EmailNode>("email"));
template <>
inline constexpr auto describe<flows::FlowNode> = record(field("id", &flows::FlowNode::id),
                                                         field("kind", &flows::FlowNode::kind),
                                                         field("position", &flows::FlowNode::position),
                                                         field("title", &flows::FlowNode::title));
template <>
inline constexpr auto describe<flows::FlowEdge::Condition> =
    enumeration<flows::FlowEdge::Condition>({{flows::FlowEdge::Condition::always, "always"},
                                             {flows::FlowEdge::Condition::success, "success"},
                                             {flows::FlowEdge::Condition::failure, "failure"}});
template <>
inline constexpr auto describe<flows::FlowEdge> = record(field("id", &flows::FlowEdge::id),
                                                         field("from", &flows::FlowEdge::from),
                                                         field("to", &flows::FlowEdge::to),
                                                         field("condition", &flows::FlowEdge::condition));
template <>
inline constexpr auto
    describe<flows::Flow> = record(field("id", &flows::Flow::id), field("name", &flows::Flow::name),
                                   field("nodes", &flows::Flow::nodes), field("edges", &flows::Flow::edges),
                                   field("updatedAt", &flows::Flow::updatedAt));

} // namespace vh
