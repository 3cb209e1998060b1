#include "Features/Flows/FlowProblem.h"

#include "Core/PathAllowlist.h"
#include "Features/Flows/Flow.h"
#include "Features/Flows/FlowReach.h"
#include "Features/Flows/FlowVariable.h"
#include "Platform/Blank.h"
#include "Platform/Folders.h"
#include "Platform/PathParts.h"

#include <algorithm>

namespace vh::flows {

namespace {

using Kind = FlowProblem::Kind;

bool usesOnly(const FlowNodeKind& kind, const std::set<FlowVariable>& known) {
    return std::ranges::all_of(textsOf(kind), [&](const std::string& text) {
        return std::ranges::includes(known, variablesIn(text));
    });
}

using FindNode = std::function<const FlowNode*(const Uuid&)>;

struct IsComplete {
    const FindNode& find;

    bool operator()(const ToolNode& node) const { return isFilledIn(node.tool); }
    bool operator()(const ScriptNode& node) const { return !isBlank(node.name); }
    bool operator()(const InstallNode& node) const { return !node.entries.empty(); }
    bool operator()(const SyncNode& node) const {
        if (isBlank(node.source) || isBlank(node.destination))
            return false;
        const FlowNode* target = node.destinationNode ? find(*node.destinationNode) : nullptr;
        return !node.destinationNode || (target && std::holds_alternative<ComputerNode>(target->kind));
    }
    bool operator()(const CopyNode& node) const { return !isBlank(node.path); }
    bool operator()(const AgentNode& node) const { return !isBlank(node.prompt); }
    bool operator()(const WaitNode& node) const { return node.seconds > 0; }
    bool operator()(const NotifyNode& node) const { return !isBlank(node.message); }
    bool operator()(const EmailNode& node) const {
        return !node.email.recipients.empty() && node.email.invalidRecipients().empty();
    }
    bool operator()(const StartNode&) const { return true; }
    bool operator()(const ComputerNode&) const { return true; }
    bool operator()(const RecipeNode&) const { return true; }
};

std::vector<std::string> writtenPaths(const FlowNodeKind& kind) {
    std::vector<std::string> paths;
    if (const auto* copy = std::get_if<CopyNode>(&kind))
        paths.push_back(pathOf(copy->folder, Folders::ofUser()));
    else if (const auto* sync = std::get_if<SyncNode>(&kind))
        paths.push_back(sync->destination);
    else if (const auto* node = std::get_if<ToolNode>(&kind))
        for (ToolPath& each : pathsOf(node->tool))
            if (each.use == PathUse::write)
                paths.push_back(std::move(each.path));
    return paths;
}

/// The path with the watched folder in its place; an arrived file lies right in it.
std::string inWatched(std::string_view path, std::string_view folder) {
    std::string filled;
    for (const FlowPiece& piece : piecesOf(trimmed(path))) {
        if (piece.variable == FlowVariable::folder || piece.variable == FlowVariable::files)
            filled += folder;
        else
            filled += piece.text;
    }
    return filled;
}

bool writesIntoStandardised(const FlowNodeKind& kind, const std::string& folder) {
    return std::ranges::any_of(writtenPaths(kind), [&](const std::string& each) {
        return isAtOrBelow(PathAllowlist::normalize(inWatched(each, folder)), folder);
    });
}

/// One look at a flow.
class Check {
public:
    explicit Check(const Flow& flow) : flow_(flow) {}

    std::vector<FlowProblem> run() {
        const auto isStart = [](const FlowNode& node) {
            return std::holds_alternative<StartNode>(node.kind);
        };
        const auto starts = std::ranges::count_if(flow_.nodes, isStart);
        if (starts != 1)
            return {{starts == 0 ? Kind::noStart : Kind::severalStarts, std::nullopt}};
        start_ = static_cast<size_t>(std::ranges::find_if(flow_.nodes, isStart) - flow_.nodes.begin());
        checkStart();
        for (size_t i = 0; i < flow_.nodes.size(); ++i)
            if (i != start_)
                checkNode(i);
        return std::move(found_);
    }

private:
    void checkStart() {
        const FlowNode& node = flow_.nodes[start_];
        const FlowTrigger& trigger = std::get<StartNode>(node.kind).trigger;
        reach_.follow(start_);
        if (!reach_.isReached(start_))
            add(Kind::unreachable, node); // its own beginning is after it
        if (!isFilledIn(trigger, flow_.id))
            add(Kind::incomplete, node);
        known_ = variablesOf(trigger);
        if (const auto* files = std::get_if<OnNewFiles>(&trigger); files && !isBlank(files->folder))
            watched_ = PathAllowlist::normalize(trimmed(files->folder));
    }

    void checkNode(size_t index) {
        const FlowNode& node = flow_.nodes[index];
        if (!reach_.isReached(index))
            return add(Kind::unreachable, node);
        if (runsOnComputer(node.kind)) {
            const auto computers = reach_.computers(index);
            if (computers.areSeveral)
                add(Kind::severalComputers, node);
            else if (const auto* machine =
                         computers.only ? std::get_if<FlowMachine>(computers.only) : nullptr;
                     machine && !machine->isMac && needsMac(node.kind))
                add(Kind::needsMac, node);
        }
        if (!std::visit(IsComplete{find_}, node.kind))
            add(Kind::incomplete, node);
        if (!usesOnly(node.kind, known_))
            add(Kind::variable, node);
        if (watched_ && writesIntoStandardised(node.kind, *watched_))
            add(Kind::writesIntoWatched, node);
    }

    void add(Kind kind, const FlowNode& node) { found_.push_back({kind, node.id}); }

    const Flow& flow_;
    FlowReach reach_{flow_};
    const FindNode find_ = [this](const Uuid& id) {
        return reach_.node(id);
    };
    size_t start_ = 0;
    std::set<FlowVariable> known_;
    std::optional<std::string> watched_;
    std::vector<FlowProblem> found_;
};

} // namespace

std::set<FlowVariable> variablesOf(const FlowTrigger& trigger) {
    std::set<FlowVariable> known{FlowVariable::date, FlowVariable::time};
    switch (kindOf(trigger)) {
    case FlowTriggerKind::diskMounted:
    case FlowTriggerKind::shareMounted:
        known.insert({FlowVariable::disk, FlowVariable::diskName});
        break;
    case FlowTriggerKind::diskUnmounted:
        known.insert(FlowVariable::diskName);
        break;
    case FlowTriggerKind::newFiles:
        known.insert({FlowVariable::files, FlowVariable::folder});
        break;
    default:
        break;
    }
    return known;
}

bool FlowProblem::blocks() const {
    return kind != Kind::noMail && kind != Kind::mailNotAllowed;
}

std::string_view FlowProblem::key() const {
    constexpr std::string_view keys[] = {
        "unreachable",         "several-computers", "needs-mac",        "incomplete", "variable",
        "writes-into-watched", "no-mail",           "mail-not-allowed", "no-start",   "several-starts"};
    return keys[static_cast<size_t>(kind)];
}

std::vector<FlowProblem> problems(const Flow& flow) {
    return Check(flow).run();
}

std::vector<FlowProblem> problems(const Flow& flow, MailState mail) {
    std::vector<FlowProblem> found = problems(flow);
    if (mail == MailState::ready)
        return found;
    std::set<Uuid> troubled;
    for (const FlowProblem& problem : found)
        if (problem.node)
            troubled.insert(*problem.node);
    for (const FlowNode& node : flow.nodes)
        if (std::holds_alternative<EmailNode>(node.kind) && !troubled.contains(node.id))
            found.push_back({mail == MailState::notReady ? Kind::noMail : Kind::mailNotAllowed, node.id});
    return found;
}

bool isComplete(const Flow& flow, const FlowNode& node) {
    const FindNode find = [&](const Uuid& id) {
        return flow.node(id);
    };
    return std::visit(IsComplete{find}, node.kind);
}

bool writesInto(const FlowNode& node, std::string_view folder) {
    return writesIntoStandardised(node.kind, PathAllowlist::normalize(trimmed(folder)));
}

} // namespace vh::flows
