#include "Core/Uuid.h"

#include "Platform/Random.h"

#include <cstring>
#include <span>

namespace vh {

namespace {

constexpr char digits[] = "0123456789ABCDEF";

bool isDashPlace(size_t at) {
    return at == 8 || at == 13 || at == 18 || at == 23;
}

int digitValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    const char upper = static_cast<char>(c & ~0x20);
    return upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : -1;
}

} // namespace

Uuid Uuid::random() {
    Uuid id;
    fillRandom(std::as_writable_bytes(std::span(id.bytes)));
    id.bytes[6] = (id.bytes[6] & 0x0F) | 0x40; // version 4
    id.bytes[8] = (id.bytes[8] & 0x3F) | 0x80; // the RFC's variant
    return id;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != 36)
        return std::nullopt;
    Uuid id;
    size_t nibble = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        if (isDashPlace(at)) {
            if (text[at] != '-')
                return std::nullopt;
            continue;
        }
        const int value = digitValue(text[at]);
        if (value < 0)
            return std::nullopt;
        auto& byte = id.bytes[nibble / 2];
        byte = static_cast<uint8_t>(byte << 4 | value);
        ++nibble;
    }
    return id;
}

std::string Uuid::text() const {
    std::string out;
    out.reserve(36);
    for (const uint8_t byte : bytes) {
        if (isDashPlace(out.size()))
            out += '-';
        out += digits[byte >> 4];
        out += digits[byte & 15];
    }
    return out;
}

} // namespace vh

size_t std::hash<vh::Uuid>::operator()(const vh::Uuid& id) const noexcept {
    size_t value;
    std::memcpy(&value, id.bytes.data(), sizeof value);
    return value;
}
