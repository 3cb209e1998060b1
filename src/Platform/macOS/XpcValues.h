#pragma once

#include "Platform/ServiceMessage.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <xpc/xpc.h>

namespace vh {

/// An object of XPC's that is released when nobody holds it any more.
using Xpc = std::shared_ptr<void>;
Xpc ownXpc(xpc_object_t object); ///< takes over the reference
Xpc holdXpc(xpc_object_t object);

/// An array of exactly these kinds; nothing when it is none, or a value is too long.
std::optional<ServiceValues> readValues(xpc_object_t array, std::string_view kinds);
/// Nothing when the values are not of these kinds, a text is none or a value is too long.
Xpc arrayOf(std::string_view kinds, const ServiceValues& values);

/// The keys of a message: a call has a method and values, a reply has values or a code and words.
namespace xpcKeys {
inline constexpr const char* method = "method";
inline constexpr const char* values = "values";
inline constexpr const char* code = "code";
inline constexpr const char* words = "words";
} // namespace xpcKeys

/// The key AppTeamID of the bundle that the running program belongs to; empty in a development build.
std::string teamID();

/// Makes the system refuse whatever is at the other end, unless it is signed so. Before the connection is resumed.
/// False when the system does not understand it.
bool requireSigned(xpc_connection_t connection, std::string_view identifier);

} // namespace vh
