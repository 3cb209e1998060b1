#include "Platform/Posix/ExtendedAttributes.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <sys/xattr.h>

namespace vh {

namespace {

/// Calls again with more room while the answer grows under our hands.
template <class Call>
std::optional<std::string> answerOf(Call call) {
    std::array<char, 4096> small;
    ssize_t size = call(small.data(), small.size());
    if (size >= 0)
        return std::string(small.data(), static_cast<size_t>(size));
    while (errno == ERANGE) {
        size = call(nullptr, 0);
        if (size < 0)
            break;
        std::string large(static_cast<size_t>(size), '\0');
        size = call(large.data(), large.size());
        if (size >= 0) {
            large.resize(static_cast<size_t>(size));
            return large;
        }
    }
    return std::nullopt;
}

} // namespace

std::vector<std::string> attributeNamesOf(int file) {
    std::vector<std::string> all;
    const auto names = answerOf([&](char* room, size_t size) { return ::flistxattr(file, room, size); });
    for (size_t at = 0; names && at < names->size(); at += all.back().size() + 1)
        all.emplace_back(names->c_str() + at);
    return all;
}

bool isAccessList(const std::string& name) {
    return name.starts_with("system.posix_acl_");
}

bool givesAccessLists(int folder) {
    return ::fgetxattr(folder, "system.posix_acl_default", nullptr, 0) >= 0;
}

void removeAttribute(int file, const std::string& name) {
    ::fremovexattr(file, name.c_str());
}

std::vector<std::pair<std::string, std::string>> attributesOf(int file) {
    std::vector<std::pair<std::string, std::string>> attributes;
    for (const std::string& name : attributeNamesOf(file)) {
        auto value =
            answerOf([&](char* room, size_t size) { return ::fgetxattr(file, name.c_str(), room, size); });
        if (value)
            attributes.emplace_back(name, std::move(*value));
    }
    return attributes;
}

bool setAttribute(int file, const std::string& name, const std::string& value) {
    return ::fsetxattr(file, name.c_str(), value.data(), value.size(), 0) == 0;
}

} // namespace vh
