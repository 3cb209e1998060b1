#include "Core/ContentHash.h"

#include "Core/DigestModule.h"
#include "Core/XXH64.h"
#include "Platform/MediumRead.h"
#include "Platform/Module.h"

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

} // namespace

ContentHash::ContentHash(HashAlgorithm algorithm)
    : engine_(algorithm == HashAlgorithm::xxhash64 ? std::make_unique<XXH64>()
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
