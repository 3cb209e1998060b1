#include "Tools/FastCopy/MhlText.h"
#include "Tools/FastCopy/SumsText.h"

#include <algorithm>
#include <cstdlib>

namespace {

using vh::copy::ManifestEntry;

bool areEqual(const ManifestEntry& a, const ManifestEntry& b) {
    return a.relative == b.relative && a.algorithm == b.algorithm && a.hash == b.hash;
}

void mustBe(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

/// A list that somebody sent may be anything; what can be read stays below its folder, and is read again the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const auto entries = vh::copy::parseManifest(text).entries;
        std::string sums;
        for (const ManifestEntry& entry : entries) {
            mustBe(!entry.relative.empty() && entry.relative.front() != '/' &&
                   ("/" + entry.relative + "/").find("/../") == std::string::npos);
            sums += vh::copy::sumLine(entry.algorithm, entry.hash, entry.relative);
        }
        mustBe(std::ranges::equal(vh::copy::parseSums(sums), entries, areEqual));
        const bool fits = std::ranges::all_of(entries, vh::copy::fitsMhl, &ManifestEntry::relative);
        if (fits)
            mustBe(std::ranges::equal(vh::copy::parseMhl(vh::copy::mhlText(entries, {}, {})), entries,
                                      areEqual));
    } catch (const vh::copy::ManifestError&) {
    }
    return 0;
}
