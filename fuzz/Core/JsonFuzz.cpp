#include "Core/Codec.h"
#include "Core/RunFilter.h"
#include "Core/RunRecord.h"

#include <cstdlib>

namespace {

/// What could be read must come back the same from what is written.
template <class T>
void roundTrip(std::string_view text) {
    try {
        const T value = vh::decodeJson<T>(text);
        const std::string written = vh::encodeJson(value);
        if (vh::encodeJson(vh::decodeJson<T>(written)) != written)
            std::abort();
    } catch (const vh::DecodeError&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    roundTrip<vh::RunRecord>(text);
    roundTrip<vh::RunFilter>(text);
    roundTrip<std::map<vh::Uuid, std::vector<vh::Bytes>>>(text);
    // Any bytes come back from JSON as they were.
    if (vh::decodeJson<std::string>(vh::encodeJson(std::string(text))) != text)
        std::abort();
    return 0;
}
