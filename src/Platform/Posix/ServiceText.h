#pragma once

#include <string>
#include <string_view>

namespace vh {

/// Whether it is a text that a service message can hold: UTF-8, without NUL, not too long.
bool isServiceText(std::string_view text);

/// The words of a refusal as they may be sent: shortened, and with replacements for what is no text.
std::string sendableText(std::string text);

} // namespace vh
