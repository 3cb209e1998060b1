#pragma once

#include "Core/Describe.h"

#include <optional>
#include <string>
#include <variant>

/// What the process that leads automation is asked by the others, as it goes through the socket of this name.
namespace vh::automation {

inline constexpr const char* leaderSocket = "automation";

/// Follow a link.
struct OpenLink {
    std::string url;
};
/// A message to a service.
struct ServiceMessage {
    std::string service; ///< its name
    std::string message; ///< as it reads it
};
using LeaderRequest = std::variant<OpenLink, ServiceMessage>;

struct LeaderReply {
    std::optional<std::string> refusal; ///< for people; nothing when it was done
};

/// Nothing when no process leads or it does not answer. Blocks for ten seconds at most; any thread.
std::optional<LeaderReply> askLeader(const LeaderRequest& request);

} // namespace vh::automation

namespace vh {
template <>
inline constexpr auto describe<automation::OpenLink> = record(field("url", &automation::OpenLink::url));
template <>
inline constexpr auto
    describe<automation::ServiceMessage> = record(field("service", &automation::ServiceMessage::service),
                                                  field("message", &automation::ServiceMessage::message));
template <>
inline constexpr auto describe<automation::LeaderRequest> =
    taggedUnion(unionCase<automation::OpenLink>("open"), unionCase<automation::ServiceMessage>("tell"));
template <>
inline constexpr auto describe<automation::LeaderReply> = record(field("refusal",
                                                                       &automation::LeaderReply::refusal));
} // namespace vh
