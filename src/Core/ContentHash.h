#pragma once

#include "Core/Describe.h"
#include "Platform/CancelToken.h"

#include <memory>
#include <string>
#include <string_view>

namespace vh {

enum class HashAlgorithm { sha256, xxhash64, md5 };

/// "SHA-256", "xxHash64", "MD5": the same in every language.
std::string_view titleOf(HashAlgorithm algorithm);

/// The hash of some content, piece by piece. One thread at a time.
class ContentHash {
public:
    /// Throws std::runtime_error when the library that hashes is missing.
    explicit ContentHash(HashAlgorithm algorithm);
    ~ContentHash();
    ContentHash(ContentHash&&) noexcept;

    void update(std::string_view bytes);
    /// Lower-case hexadecimal, of all that came. Ends the hashing.
    std::string hex();

    /// What counts the bytes of one algorithm.
    class Engine {
    public:
        virtual ~Engine() = default;
        virtual void update(std::string_view bytes) = 0;
        virtual std::string hex() = 0;
    };

private:
    std::unique_ptr<Engine> engine_;
};

/// Of a whole file, read from wherever it lies. Throws SystemError or Cancelled.
std::string hashOfFile(const std::string& path, HashAlgorithm algorithm, const CancelToken& cancel = {});

template <>
inline constexpr auto describe<HashAlgorithm> = enumeration<HashAlgorithm>(
    {{HashAlgorithm::sha256, "sha256"}, {HashAlgorithm::xxhash64, "xxhash64"}, {HashAlgorithm::md5, "md5"}});

} // namespace vh
