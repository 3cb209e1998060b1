#pragma once

#include "Core/ContentHash.h"

namespace vh {

/// What the module "digest" offers: the hashes that a cryptographic library counts.
struct DigestModule {
    /// Nothing for an algorithm that it has not.
    std::unique_ptr<ContentHash::Engine> (*open)(HashAlgorithm algorithm);
};

} // namespace vh
