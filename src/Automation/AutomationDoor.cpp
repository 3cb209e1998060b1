#include "Automation/AutomationDoor.h"

#include "Core/Codec.h"
#include "Platform/InstanceDoor.h"

namespace vh::automation {

std::optional<DoorReply> askLeader(const DoorRequest& request) {
    const auto answer = askInstance(doorName, encodeJson(request));
    if (!answer)
        return std::nullopt;
    try {
        return decodeJson<DoorReply>(*answer);
    } catch (const DecodeError&) {
        return std::nullopt;
    }
}

} // namespace vh::automation
