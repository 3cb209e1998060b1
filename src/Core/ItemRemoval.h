#pragma once

#include "Core/RemovalMethod.h"
#include "Platform/FileIdentity.h"

#include <optional>
#include <string>

namespace vh {

/// The one way anything is removed, after the guards. `trash` gives the path where the item landed, `permanent`
/// nothing. With `expected`, refuses when something else lies at the path by now. Throws the platform's SystemError.
std::optional<std::string> removeItem(const std::string& path, RemovalMethod method,
                                      const std::optional<FileIdentity>& expected = std::nullopt);

} // namespace vh
