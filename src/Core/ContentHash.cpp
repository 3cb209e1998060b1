#include "Core/ContentHash.h"

#include "Core/DigestModule.h"
#include "Platform/MediumRead.h"
#include "Platform/Module.h"

#include <fmt/format.h>

// Compiled in: of the library only these few functions are needed, and a start has nothing to load.
#define XXH_INLINE_ALL
#include <xxhash.h>

namespace vh {

std::string_view titleOf(HashAlgorithm algorithm) {
    switch (algorithm) {
    case HashAlgorithm::sha256:
        return "SHA-256";
    case HashAlgorithm::xxhash64:
        return "xxHash64";
    default:
        return "MD5";
    }
}

namespace {

/// Looked for once: a copy of many small files hashes as many times.
const DigestModule& digestModule() {
    static const auto* const module = static_cast<const DigestModule*>(openModule("digest"));
    return *module;
}

class XXHash64 : public ContentHash::Engine {
public:
    XXHash64() { XXH64_reset(&state_, 0); }
    void update(std::string_view bytes) override { XXH64_update(&state_, bytes.data(), bytes.size()); }
    std::string hex() override { return fmt::format("{:016x}", XXH64_digest(&state_)); }

private:
    XXH64_state_t state_;
};

} // namespace

ContentHash::ContentHash(HashAlgorithm algorithm)
    : engine_(algorithm == HashAlgorithm::xxhash64 ? std::make_unique<XXHash64>()
                                                   : digestModule().open(algorithm)) {}
ContentHash::~ContentHash() = default;
ContentHash::ContentHash(ContentHash&&) noexcept = default;

void ContentHash::update(std::string_view bytes) {
    engine_->update(bytes);
}

std::string ContentHash::hex() {
    return engine_->hex();
}

std::string hashOfFile(const std::string& path, HashAlgorithm algorithm, const CancelToken& cancel) {
    ContentHash hash(algorithm);
    readBlocks(path, ReadFrom::anywhere, [&](std::string_view block) {
        cancel.throwIfCancelled();
        hash.update(block);
        return true;
    });
    return hash.hex();
}

} // namespace vh
