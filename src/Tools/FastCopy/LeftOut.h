#pragma once

#include "Core/Describe.h"

#include <cstdint>

namespace vh {
namespace copy {

/// What lies below the sources and is not copied, because it is neither a file nor a folder.
struct LeftOut {
    int64_t links = 0;
    int64_t sockets = 0;
    int64_t others = 0; ///< pipes and devices
};

} // namespace copy

template <>
inline constexpr auto describe<copy::LeftOut> = record(field("links", &copy::LeftOut::links),
                                                       field("sockets", &copy::LeftOut::sockets),
                                                       field("others", &copy::LeftOut::others));

} // namespace vh
