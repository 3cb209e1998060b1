#pragma once

#include "Platform/ServiceMessage.h"

#include <optional>
#include <string>
#include <string_view>
#include <systemd/sd-bus.h>

namespace vh {

/// As D-Bus writes it: bytes are "ay", the other kinds have the same letter.
std::string signatureOf(std::string_view kinds);

/// The body of a message that has this signature and nothing else; nothing when it has not, or a value is too long.
std::optional<ServiceValues> readValues(sd_bus_message* message, std::string_view kinds);

/// False when the values are not of these kinds, a text is none, a value is too long or there is no memory. The bus
/// hangs up on whoever sends a text that is no UTF-8, so none leaves.
bool appendValues(sd_bus_message* message, std::string_view kinds, const ServiceValues& values);

} // namespace vh
