#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// What goes through an InstanceSocket: four bytes of length, the highest first, and as many bytes of text.
constexpr size_t messageHeaderBytes = 4;
constexpr size_t mostMessageBytes = 64u << 10;

inline std::string instanceMessage(std::string_view text) {
    std::string message;
    for (int shift = 24; shift >= 0; shift -= 8)
        message += static_cast<char>(text.size() >> shift & 0xFF);
    return message.append(text);
}

/// How many bytes the whole message has that begins so; nothing while the header is not complete.
inline std::optional<size_t> instanceMessageBytes(std::string_view received) {
    if (received.size() < messageHeaderBytes)
        return std::nullopt;
    size_t length = 0;
    for (const char byte : received.substr(0, messageHeaderBytes))
        length = length << 8 | static_cast<unsigned char>(byte);
    return messageHeaderBytes + length;
}

} // namespace vh
