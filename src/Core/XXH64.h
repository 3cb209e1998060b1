#pragma once

#include "Core/ContentHash.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace vh {

/// The published XXH64 algorithm (xxHash specification 0.1.1, "XXH64 Algorithm Description"), with seed 0.
class XXH64 : public ContentHash::Engine {
public:
    void update(std::string_view bytes) override;
    std::string hex() override;
    uint64_t digest() const;

private:
    static constexpr size_t stripeBytes = 32;
    /// Takes the whole stripes in; gives what is left.
    std::string_view mix(std::string_view bytes);

    static constexpr uint64_t seed = 0;
    static constexpr uint64_t prime1 = 0x9E3779B185EBCA87u;
    static constexpr uint64_t prime2 = 0xC2B2AE3D27D4EB4Fu;
    static constexpr uint64_t prime3 = 0x165667B19E3779F9u;
    static constexpr uint64_t prime4 = 0x85EBCA77C2B2AE63u;
    static constexpr uint64_t prime5 = 0x27D4EB2F165667C5u;
    static constexpr uint64_t round(uint64_t lane, uint64_t input);
    static constexpr uint64_t merged(uint64_t hash, uint64_t lane);

    uint64_t v1_ = seed + prime1 + prime2;
    uint64_t v2_ = seed + prime2;
    uint64_t v3_ = seed;
    uint64_t v4_ = seed - prime1;
    uint64_t total_ = 0;
    std::array<char, stripeBytes> buffer_; ///< what does not fill a stripe yet
    size_t buffered_ = 0;
};

} // namespace vh
