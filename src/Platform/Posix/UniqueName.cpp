#include "Platform/Posix/UniqueName.h"

#include "Platform/Random.h"
#include "Platform/Removal.h"

#include <array>
#include <fmt/format.h>

namespace vh {

std::string uniquePartialName(std::string_view name) {
    constexpr size_t keptOfName = 80;
    std::array<std::byte, 8> random{};
    fillRandom(random);
    std::string digits;
    for (const std::byte byte : random)
        digits += fmt::format("{:02x}", static_cast<unsigned>(byte));
    return fmt::format(".{}.{}{}", name.substr(0, keptOfName), digits, partialSuffix);
}

void removeLeftover(const std::string& path, const std::optional<FileIdentity>& expected) {
    try {
        removePermanently(path, expected);
    } catch (const SystemError&) {
    }
}

} // namespace vh
