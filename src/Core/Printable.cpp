#include "Core/Printable.h"

#include <algorithm>
#include <fmt/format.h>
#include <unicode/utf8.h>

namespace vh {

namespace {

/// What would move the cursor, break the line or turn the reading direction of what follows.
bool disturbs(UChar32 c) {
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029 ||
           (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

bool isPlain(char c) {
    return c >= 0x20 && c < 0x7F;
}

} // namespace

std::string printable(std::string_view bytes) {
    if (std::ranges::all_of(bytes, isPlain))
        return std::string(bytes);
    std::string text;
    const auto length = static_cast<int64_t>(bytes.size());
    for (int64_t next = 0; next < length;) {
        const int64_t start = next;
        UChar32 c = 0;
        U8_NEXT(bytes, next, length, c);
        const auto piece = bytes.substr(static_cast<size_t>(start), static_cast<size_t>(next - start));
        if (c >= 0 && !disturbs(c)) {
            text += piece;
            continue;
        }
        for (char byte : piece)
            fmt::format_to(std::back_inserter(text), "\\x{:02X}", static_cast<unsigned char>(byte));
    }
    return text;
}

} // namespace vh
