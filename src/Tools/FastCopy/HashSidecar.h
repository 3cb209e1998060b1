#pragma once

#include <string>
#include <string_view>

namespace vh::copy {

/// Where the hash of an image lies: "<image>.sha256".
std::string sidecarOf(const std::string& image);

/// Writes the image's SHA-256, lower-case hexadecimal, beside it, so that sha256sum checks it. Throws SystemError.
void writeHashSidecar(const std::string& image, std::string_view sha256);

} // namespace vh::copy
