#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

/// Binary content; in JSON it is base64.
using Bytes = std::vector<std::byte>;

/// The standard alphabet with padding (RFC 4648, section 4).
std::string base64(std::span<const std::byte> bytes);
/// Nothing for a wrong length, alphabet or padding; line breaks are not allowed.
std::optional<Bytes> parseBase64(std::string_view text);

} // namespace vh
