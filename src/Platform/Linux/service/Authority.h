#pragma once

#include "Platform/Linux/modules/BusCalls.h"
#include "Platform/ServiceMessage.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// Nothing: the peer may.
using Verdict = std::optional<ServiceRefusal>;

/// Asks polkit whether the peer with this unique name may do `action`; polkit may ask the person. `told` is called once,
/// on the bus's thread, at the latest after `limit`. Letting go of the token takes the question back. The bus must
/// outlive the token.
std::shared_ptr<void> askAuthority(sd_bus* bus, const std::string& peer, std::string_view action,
                                   std::chrono::microseconds limit, std::function<void(Verdict)> told);

} // namespace vh
