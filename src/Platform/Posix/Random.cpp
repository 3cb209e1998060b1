#include "Platform/Random.h"

#include "Platform/SystemError.h"

#include <algorithm>
#include <sys/random.h>
#include <unistd.h>

namespace vh {

void fillRandom(std::span<std::byte> bytes) {
    constexpr size_t mostAtOnce = 256; // getentropy's own limit
    while (!bytes.empty()) {
        const size_t count = std::min(bytes.size(), mostAtOnce);
        if (::getentropy(bytes.data(), count) != 0)
            throwErrno("random source");
        bytes = bytes.subspan(count);
    }
}

} // namespace vh
