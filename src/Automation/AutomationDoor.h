#pragma once

#include "Core/Describe.h"
#include "Core/Uuid.h"
#include "Features/Flows/FlowRun.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

/// What the process that leads automation is asked by the others, as it goes through the door of this name.
namespace vh::automation {

inline constexpr const char* doorName = "automation";

/// Start the flow of a link.
struct OpenLink {
    std::string url;
};
/// A flow has ended in the asking process: start what waits for it.
struct FlowEnded {
    Uuid flow;
    flows::FlowNodeOutcome outcome = flows::FlowNodeOutcome::success;
    std::vector<Uuid> chain;
};
using DoorRequest = std::variant<OpenLink, FlowEnded>;

struct DoorReply {
    std::optional<std::string> refusal; ///< for people; nothing when it was done
};

/// Nothing when no process leads or it does not answer. Blocks for ten seconds at most; any thread.
std::optional<DoorReply> askLeader(const DoorRequest& request);

} // namespace vh::automation

namespace vh {
template <>
inline constexpr auto describe<automation::OpenLink> = record(field("url", &automation::OpenLink::url));
template <>
inline constexpr auto describe<automation::FlowEnded> = record(field("flow", &automation::FlowEnded::flow),
                                                               field("outcome",
                                                                     &automation::FlowEnded::outcome),
                                                               field("chain", &automation::FlowEnded::chain));
template <>
inline constexpr auto describe<automation::DoorRequest> =
    taggedUnion(unionCase<automation::OpenLink>("open"), unionCase<automation::FlowEnded>("ended"));
template <>
inline constexpr auto describe<automation::DoorReply> = record(field("refusal",
                                                                     &automation::DoorReply::refusal));
} // namespace vh
