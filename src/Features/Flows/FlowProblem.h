#pragma once

#include "Core/Uuid.h"
#include "Features/Flows/FlowTrigger.h"
#include "Features/Flows/FlowVariable.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vh::flows {

struct Flow;
struct FlowNode;

/// Something about a flow that keeps it, or a part of it, from working.
struct FlowProblem {
    enum class Kind {
        unreachable,
        severalComputers,
        needsMac,
        incomplete,
        variable,
        writesIntoWatched,
        noMail,
        mailNotAllowed,
        noStart,
        severalStarts
    };
    Kind kind = Kind::noStart;
    std::optional<Uuid> node; ///< set for all but the last two kinds

    /// Whether the flow cannot be run with it.
    bool blocks() const;
    /// The end of its "nodes.problem." text.
    std::string_view key() const;
    bool operator==(const FlowProblem&) const = default;
};

/// The variables that have a value in a run that the trigger started.
std::set<FlowVariable> variablesOf(const FlowTrigger& trigger);

/// What is wrong with the flow itself, in the order of its nodes. Quick enough for every keystroke.
std::vector<FlowProblem> problems(const Flow& flow);

enum class MailState { ready, notReady, notAllowed };
/// The same with what the mail settings add.
std::vector<FlowProblem> problems(const Flow& flow, MailState mail);

/// Whether the node has all that its kind cannot do without.
bool isComplete(const Flow& flow, const FlowNode& node);
/// Whether the node writes to the folder or into it.
bool writesInto(const FlowNode& node, std::string_view folder);

} // namespace vh::flows
