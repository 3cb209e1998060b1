#include "Core/JsonText.h"

#include <simdjson.h>
#include <unicode/utf8.h>

namespace vh {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";

int hexValue(char digit) {
    const auto at = std::string_view(hexDigits).find(digit);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

void appendHex(std::string& out, unsigned char byte) {
    out += hexDigits[byte >> 4];
    out += hexDigits[byte & 15];
}

void appendUndecodable(std::string& out, unsigned char byte) {
    out += "\\u0000";
    appendHex(out, byte);
}

void appendControl(std::string& out, unsigned char byte) {
    switch (byte) {
    case '\n':
        out += "\\n";
        break;
    case '\r':
        out += "\\r";
        break;
    case '\t':
        out += "\\t";
        break;
    default:
        out += "\\u00";
        appendHex(out, byte);
    }
}

/// Characters of valid UTF-8 that JSON wants escaped; the rest goes over in one piece.
void appendValid(std::string& out, std::string_view text) {
    size_t plain = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte >= 0x20 && byte != '"' && byte != '\\')
            continue;
        out += text.substr(plain, at - plain);
        plain = at + 1;
        if (byte == 0)
            appendUndecodable(out, byte);
        else if (byte < 0x20)
            appendControl(out, byte);
        else
            (out += '\\') += text[at];
    }
    out += text.substr(plain);
}

} // namespace

void appendJsonText(std::string& out, std::string_view bytes) {
    out += '"';
    if (simdjson::validate_utf8(bytes.data(), bytes.size())) {
        appendValid(out, bytes);
    } else {
        const auto size = static_cast<int64_t>(bytes.size());
        for (int64_t at = 0; at < size;) {
            const int64_t start = at;
            UChar32 character;
            U8_NEXT(bytes.data(), at, size, character);
            if (character >= 0)
                appendValid(out, bytes.substr(start, at - start));
            else
                for (int64_t byte = start; byte < at; ++byte)
                    appendUndecodable(out, static_cast<unsigned char>(bytes[byte]));
        }
    }
    out += '"';
}

std::string bytesOfJsonText(std::string_view text) {
    if (text.find('\0') == std::string_view::npos)
        return std::string(text);
    std::string bytes;
    for (size_t at = 0; at < text.size(); ++at) {
        const int high = text[at] == '\0' && at + 2 < text.size() ? hexValue(text[at + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[at + 2]) : -1;
        if (low >= 0) {
            bytes += static_cast<char>(high * 16 + low);
            at += 2;
        } else {
            bytes += text[at];
        }
    }
    return bytes;
}

} // namespace vh
