#pragma once

#include "Core/Describe.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vh {
namespace helper {

enum class DeviceJobKind { image };

/// Work on a whole disk.
struct DeviceJobSpec {
    DeviceJobKind kind = DeviceJobKind::image;
    std::string device;      ///< a whole disk, such as "/dev/sdb"
    std::string destination; ///< a file that does not exist yet, in a folder where the peer may make one
};

enum class DeviceJobPhase { preparing, copying, finishing, done, failed, cancelled };

struct DeviceJobStatus {
    DeviceJobPhase phase = DeviceJobPhase::preparing;
    int64_t bytesDone = 0;
    int64_t bytesTotal = 0;
    int64_t badBlocks = 0;        ///< of 4096 bytes; zeros stand for them in the image
    std::string sha256;           ///< of the image, lower-case hexadecimal; empty until it is done
    std::vector<std::string> log; ///< for people, oldest first, bounded
    std::string error;            ///< why it failed
    bool isOver() const { return phase >= DeviceJobPhase::done; }
};

} // namespace helper

template <>
inline constexpr auto describe<helper::DeviceJobKind> =
    enumeration<helper::DeviceJobKind>({{helper::DeviceJobKind::image, "image"}});

template <>
inline constexpr auto
    describe<helper::DeviceJobSpec> = record(field("kind", &helper::DeviceJobSpec::kind),
                                             field("device", &helper::DeviceJobSpec::device),
                                             field("destination", &helper::DeviceJobSpec::destination));

template <>
inline constexpr auto describe<helper::DeviceJobPhase> =
    enumeration<helper::DeviceJobPhase>({{helper::DeviceJobPhase::preparing, "preparing"},
                                         {helper::DeviceJobPhase::copying, "copying"},
                                         {helper::DeviceJobPhase::finishing, "finishing"},
                                         {helper::DeviceJobPhase::done, "done"},
                                         {helper::DeviceJobPhase::failed, "failed"},
                                         {helper::DeviceJobPhase::cancelled, "cancelled"}});

template <>
inline constexpr auto describe<helper::DeviceJobStatus> = record(
    field("phase", &helper::DeviceJobStatus::phase), field("bytesDone", &helper::DeviceJobStatus::bytesDone),
    field("bytesTotal", &helper::DeviceJobStatus::bytesTotal),
    field("badBlocks", &helper::DeviceJobStatus::badBlocks),
    field("sha256", &helper::DeviceJobStatus::sha256), field("log", &helper::DeviceJobStatus::log),
    field("error", &helper::DeviceJobStatus::error));

} // namespace vh
