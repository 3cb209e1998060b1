#include "cli/NamedThing.h"

namespace vh::cli {

bool isIdentifier(const Uuid& id, std::string_view word) {
    constexpr size_t shortestPrefix = 4;
    std::string prefix(word);
    std::ranges::transform(prefix, prefix.begin(),
                           [](char c) { return c >= 'a' && c <= 'f' ? static_cast<char>(c & ~0x20) : c; });
    return prefix.size() >= shortestPrefix && id.text().starts_with(prefix);
}

} // namespace vh::cli
