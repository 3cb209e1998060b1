#include "Automation/LeaderMessages.h"

#include "Core/Codec.h"
#include "Platform/InstanceSocket.h"

namespace vh::automation {

std::optional<LeaderReply> askLeader(const LeaderRequest& request) {
    try {
        if (const auto answer = askInstance(leaderSocket, encodeJson(request)))
            return decodeJson<LeaderReply>(*answer);
    } catch (const std::runtime_error&) {
        // Too long a request, or a socket that nobody can reach: the same as none.
    }
    return std::nullopt;
}

} // namespace vh::automation
