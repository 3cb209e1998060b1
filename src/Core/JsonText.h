#pragma once

#include <string>
#include <string_view>

namespace vh {

/// File names are bytes, JSON is Unicode. A byte that is not part of valid UTF-8 is written as U+0000 and two
/// hexadecimal digits, and U+0000 itself as U+0000 "00": no name holds a NUL, so every other text stays as it is and
/// every byte comes back.

/// Appends `bytes` as a quoted JSON string.
void appendJsonText(std::string& out, std::string_view bytes);

/// The bytes that a parsed JSON string stands for.
std::string bytesOfJsonText(std::string_view text);

} // namespace vh
