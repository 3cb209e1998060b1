#include "Core/XXH64.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <fmt/format.h>

namespace vh {

namespace {

/// The algorithm reads numbers little-endian.
template <class Number>
Number readNumber(const char* bytes) {
    static_assert(std::endian::native == std::endian::little);
    Number number;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

} // namespace

constexpr uint64_t XXH64::round(uint64_t lane, uint64_t input) {
    return std::rotl(lane + input * prime2, 31) * prime1;
}

constexpr uint64_t XXH64::merged(uint64_t hash, uint64_t lane) {
    return (hash ^ round(0, lane)) * prime1 + prime4;
}

std::string_view XXH64::mix(std::string_view bytes) {
    // Beside the members: what is read might be them, as far as the compiler knows, and it would store them each time.
    uint64_t v1 = v1_, v2 = v2_, v3 = v3_, v4 = v4_;
    for (; bytes.size() >= stripeBytes; bytes.remove_prefix(stripeBytes)) {
        v1 = round(v1, readNumber<uint64_t>(bytes.data()));
        v2 = round(v2, readNumber<uint64_t>(bytes.data() + 8));
        v3 = round(v3, readNumber<uint64_t>(bytes.data() + 16));
        v4 = round(v4, readNumber<uint64_t>(bytes.data() + 24));
    }
    v1_ = v1, v2_ = v2, v3_ = v3, v4_ = v4;
    return bytes;
}

void XXH64::update(std::string_view bytes) {
    total_ += bytes.size();
    if (buffered_ > 0) {
        const size_t taken = std::min(bytes.size(), stripeBytes - buffered_);
        std::memcpy(buffer_.data() + buffered_, bytes.data(), taken);
        buffered_ += taken;
        bytes.remove_prefix(taken);
        if (buffered_ < stripeBytes)
            return;
        mix({buffer_.data(), stripeBytes});
        buffered_ = 0;
    }
    bytes = mix(bytes);
    std::ranges::copy(bytes, buffer_.data());
    buffered_ = bytes.size();
}

uint64_t XXH64::digest() const {
    uint64_t hash = seed + prime5;
    if (total_ >= stripeBytes) {
        hash = std::rotl(v1_, 1) + std::rotl(v2_, 7) + std::rotl(v3_, 12) + std::rotl(v4_, 18);
        for (const uint64_t lane : {v1_, v2_, v3_, v4_})
            hash = merged(hash, lane);
    }
    hash += total_;
    const char* at = buffer_.data();
    const char* const end = at + buffered_;
    for (; end - at >= 8; at += 8)
        hash = std::rotl(hash ^ round(0, readNumber<uint64_t>(at)), 27) * prime1 + prime4;
    if (end - at >= 4) {
        hash = std::rotl(hash ^ readNumber<uint32_t>(at) * prime1, 23) * prime2 + prime3;
        at += 4;
    }
    for (; at < end; ++at)
        hash = std::rotl(hash ^ static_cast<unsigned char>(*at) * prime5, 11) * prime1;
    hash = (hash ^ hash >> 33) * prime2;
    hash = (hash ^ hash >> 29) * prime3;
    return hash ^ hash >> 32;
}

std::string XXH64::hex() {
    return fmt::format("{:016x}", digest());
}

} // namespace vh
