#pragma once

#include "Platform/Linux/modules/BusCalls.h"
#include "Platform/Posix/ServiceCalls.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vh {

/// Asks polkit whether the peer with this unique name may do `action`; polkit may ask the person. `told` is called once,
/// on the bus's thread, at the latest after `limit`. Letting go of the token takes the question back. The bus must
/// outlive the token.
std::shared_ptr<void> askAuthority(sd_bus* bus, const std::string& peer, std::string_view action,
                                   std::chrono::microseconds limit, std::function<void(const Verdict&)> told);

} // namespace vh
