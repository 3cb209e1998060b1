#include "Platform/Posix/UniqueName.h"

#include "Platform/Random.h"
#include "Platform/Removal.h"

#include <array>
#include <fmt/format.h>

namespace vh {

namespace {

/// The longest name that most file systems take.
constexpr size_t longest = 255;

} // namespace

std::string uniquePartialName(std::string_view name) {
    constexpr size_t keptOfName = 80;
    std::array<std::byte, 8> random{};
    fillRandom(random);
    std::string digits;
    for (const std::byte byte : random)
        digits += fmt::format("{:02x}", static_cast<unsigned>(byte));
    return fmt::format(".{}.{}{}", name.substr(0, keptOfName), digits, partialSuffix);
}

std::string partialNameOf(const std::string& name, std::string_view suffix) {
    if (name.size() + suffix.size() <= longest)
        return name + std::string(suffix);
    return fmt::format(".{:016x}{}", std::hash<std::string>{}(name), suffix);
}

std::string numberedName(const std::string& name, int number) {
    const size_t dot = name.rfind('.');
    const bool hasExtension = dot != std::string::npos && dot > 0;
    std::string stem = name.substr(0, hasExtension ? dot : name.size());
    const std::string rest = fmt::format(" {}{}", number, hasExtension ? name.substr(dot) : "");
    while (!stem.empty() && stem.size() + rest.size() > longest) {
        while (stem.size() > 1 &&
               (static_cast<unsigned char>(stem.back()) & 0xC0) == 0x80) // of one character
            stem.pop_back();
        stem.pop_back();
    }
    return stem + rest;
}

void removeLeftover(const std::string& path, const std::optional<FileIdentity>& expected) {
    try {
        removePermanently(path, expected);
    } catch (const SystemError&) {
    }
}

} // namespace vh
