#include "Core/ValidText.h"

#include <unicode/utf8.h>

namespace vh {

std::string validText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    const auto length = static_cast<int64_t>(bytes.size());
    for (int64_t next = 0; next < length;) {
        const int64_t start = next;
        UChar32 c = 0;
        U8_NEXT(bytes, next, length, c);
        if (c >= 0)
            text += bytes.substr(static_cast<size_t>(start), static_cast<size_t>(next - start));
        else
            text += "\uFFFD";
    }
    return text;
}

} // namespace vh
