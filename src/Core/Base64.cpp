#include "Core/Base64.h"

#include <array>
#include <cstdint>

namespace vh {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr auto values = [] {
    std::array<int8_t, 256> table{};
    table.fill(-1);
    for (size_t i = 0; i < alphabet.size(); ++i)
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<int8_t>(i);
    return table;
}();

} // namespace

std::string base64(std::span<const std::byte> bytes) {
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t at = 0; at < bytes.size(); at += 3) {
        const size_t count = std::min<size_t>(3, bytes.size() - at);
        uint32_t group = 0;
        for (size_t i = 0; i < 3; ++i)
            group = group << 8 | (i < count ? std::to_integer<uint32_t>(bytes[at + i]) : 0);
        for (size_t i = 0; i < 4; ++i)
            out += i <= count ? alphabet[group >> (18 - 6 * i) & 63] : '=';
    }
    return out;
}

std::optional<Bytes> parseBase64(std::string_view text) {
    if (text.size() % 4 != 0)
        return std::nullopt;
    const size_t padding = text.ends_with("==") ? 2 : text.ends_with("=") ? 1 : 0;
    Bytes out;
    out.reserve(text.size() / 4 * 3);
    uint32_t group = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        const bool isPadding = at >= text.size() - padding;
        const int value = isPadding ? 0 : values[static_cast<unsigned char>(text[at])];
        if (value < 0)
            return std::nullopt;
        group = group << 6 | static_cast<uint32_t>(value);
        if (at % 4 == 3) {
            for (int shift = 16; shift >= 0; shift -= 8)
                out.push_back(static_cast<std::byte>(group >> shift & 255));
            group = 0;
        }
    }
    out.resize(out.size() - padding);
    return out;
}

} // namespace vh
