#pragma once

#include <string>
#include <string_view>

namespace vh::junk {

/// The path with its links resolved as far as it exists; as it is when that cannot be found out.
std::string withoutLinks(const std::string& path);

} // namespace vh::junk
