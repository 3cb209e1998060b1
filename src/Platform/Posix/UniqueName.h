#pragma once

#include "Platform/FileIdentity.h"
#include "Platform/PartialSuffix.h"

#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// A hidden name that nobody else has, made from `name` and short enough for any file system: ".name.<random>" and
/// the suffix.
std::string uniquePartialName(std::string_view name);

/// The name with `suffix`, or one in its stead where that is too long: always the same for the same name.
std::string partialNameOf(const std::string& name, std::string_view suffix);

/// "name 2", "name 3"…, before the extension and short enough for any file system.
std::string numberedName(const std::string& name, int number);

/// Removes what is at `path`, if anything and no other than expected. Fails in silence: it is the failure that led here
/// which is to be reported.
void removeLeftover(const std::string& path, const std::optional<FileIdentity>& expected = std::nullopt);

} // namespace vh
