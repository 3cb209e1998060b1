#include "Core/ContentHash.h"

#include <gtest/gtest.h>
#include <random>

namespace vh {

namespace {

std::string hashOf(HashAlgorithm algorithm, std::string_view bytes) {
    ContentHash hash(algorithm);
    hash.update(bytes);
    return hash.hex();
}

} // namespace

/// The vectors of the algorithms' own publications; the last one of XXH64 is longer than a stripe.
TEST(ContentHash, GivesThePublishedValues) {
    struct Case {
        HashAlgorithm algorithm;
        std::string_view content, hex;
    };
    for (const Case& each :
         {Case{HashAlgorithm::sha256, "abc",
               "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
          Case{HashAlgorithm::sha256, "", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
          Case{HashAlgorithm::md5, "abc", "900150983cd24fb0d6963f7d28e17f72"},
          Case{HashAlgorithm::xxhash64, "", "ef46db3751d8e999"},
          Case{HashAlgorithm::xxhash64, "abc", "44bc2cf5ad770999"},
          Case{HashAlgorithm::xxhash64, "Nobody inspects the spammish repetition", "fbcea83c8a378bf1"}})
        EXPECT_EQ(hashOf(each.algorithm, each.content), each.hex);
}

TEST(ContentHash, DoesNotCareInWhichPiecesContentComes) {
    std::mt19937 random(1);
    std::string content(5000, '\0');
    for (char& each : content)
        each = static_cast<char>(random());
    for (const HashAlgorithm algorithm : allCases<HashAlgorithm>())
        for (int round = 0; round < 20; ++round) {
            ContentHash hash(algorithm);
            for (std::string_view rest = content; !rest.empty();) {
                const size_t piece = std::min<size_t>(rest.size(), random() % 100);
                hash.update(rest.substr(0, piece));
                rest.remove_prefix(piece);
            }
            EXPECT_EQ(hash.hex(), hashOf(algorithm, content));
        }
}

} // namespace vh
