#pragma once

#include <string>
#include <string_view>

namespace vh {

/// Valid UTF-8 on one line, for people, from bytes such as a file name: undecodable bytes, control characters, line
/// separators and direction overrides come out as \xNN, all else as it is.
std::string printable(std::string_view bytes);

} // namespace vh
