#include "Automation/AutomationDoor.h"

#include "Core/Codec.h"
#include "Platform/InstanceDoor.h"

namespace vh::automation {

std::optional<DoorReply> askLeader(const DoorRequest& request) {
    try {
        if (const auto answer = askInstance(doorName, encodeJson(request)))
            return decodeJson<DoorReply>(*answer);
    } catch (const std::runtime_error&) {
        // Too long a request, or a door that nobody can reach: the same as none.
    }
    return std::nullopt;
}

} // namespace vh::automation
