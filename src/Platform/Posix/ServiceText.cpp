#include "Platform/Posix/ServiceText.h"

#include "Platform/ServiceMessage.h"

#include <algorithm>
#include <simdjson.h>

namespace vh {

namespace {

constexpr size_t mostWords = 1u << 16; ///< of a refusal, in bytes

} // namespace

bool isServiceText(std::string_view text) {
    return text.size() <= mostServiceBytes && text.find('\0') == text.npos &&
           simdjson::validate_utf8(text.data(), text.size());
}

std::string sendableText(std::string text) {
    if (text.size() > mostWords) {
        text.resize(mostWords);
        while (!text.empty() && (text.back() & 0xC0) == 0x80) // the rest of a character that was cut
            text.pop_back();
        if (!text.empty() && (text.back() & 0x80) != 0)
            text.pop_back();
    }
    if (!isServiceText(text))
        std::ranges::replace_if(
            text, [](char c) { return c == '\0' || (c & 0x80) != 0; }, '?');
    return text;
}

} // namespace vh
