#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// An identifier of 128 bits (RFC 9562).
struct Uuid {
    std::array<uint8_t, 16> bytes{};

    /// A random one (version 4). Throws SystemError when the system has no randomness.
    static Uuid random();
    /// Reads the 36-character form in either case.
    static std::optional<Uuid> parse(std::string_view text);
    /// The 36-character form, in capitals as it is stored.
    std::string text() const;

    bool operator==(const Uuid&) const = default;
    /// Written out, for libc++ up to 16 orders no arrays.
    std::strong_ordering operator<=>(const Uuid& other) const {
        return std::memcmp(bytes.data(), other.bytes.data(), bytes.size()) <=> 0;
    }
};

} // namespace vh

template <>
struct std::hash<vh::Uuid> {
    size_t operator()(const vh::Uuid& id) const noexcept;
};
