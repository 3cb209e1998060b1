#include "Platform/Linux/TrashInfo.h"

#include "Platform/Blank.h"

#include <charconv>
#include <fmt/format.h>

namespace vh {

namespace {

/// The unreserved characters of RFC 2396 and the slash between components.
bool standsForItself(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-_.!~*'()/").find(c) != std::string_view::npos;
}

std::string percentEncoded(std::string_view path) {
    std::string text;
    for (const char c : path)
        text +=
            standsForItself(c) ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
    return text;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string path;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            path += text[i];
            continue;
        }
        unsigned char byte = 0;
        const std::string_view digits = text.substr(i + 1, 2);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (digits.size() != 2 || error != std::errc() || end != digits.data() + 2 || byte == 0)
            return std::nullopt;
        path += static_cast<char>(byte);
        i += 2;
    }
    return path;
}

bool climbs(std::string_view path) {
    return path == ".." || path.starts_with("../") || path.ends_with("/..") ||
           path.find("/../") != std::string_view::npos;
}

/// At most `most` bytes of `text`, no UTF-8 sequence cut in two.
std::string_view shortened(std::string_view text, size_t most) {
    if (text.size() <= most)
        return text;
    size_t end = most;
    while (end > 0 && most - end < 3 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return text.substr(0, end);
}

} // namespace

std::string trashInfoText(const TrashInfo& info) {
    return fmt::format("[Trash Info]\nPath={}\nDeletionDate={}\n", percentEncoded(info.path),
                       info.deletionDate);
}

std::optional<TrashInfo> parseTrashInfo(std::string_view text) {
    bool inGroup = false;
    std::optional<std::string> path;
    std::optional<std::string> date;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with('['))
            inGroup = line == "[Trash Info]";
        const size_t equals = line.find('=');
        if (!inGroup || equals == std::string_view::npos)
            continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        // Of a key that stands there twice the first counts.
        if (key == "Path" && !path)
            path = percentDecoded(value).value_or("");
        else if (key == "DeletionDate" && !date)
            date = std::string(value);
    }
    if (!path || path->empty() || climbs(*path))
        return std::nullopt;
    return TrashInfo{*path, date.value_or("")};
}

std::string trashName(std::string_view name, unsigned attempt, size_t mostBytes) {
    const size_t most = mostBytes - trashInfoSuffix.size();
    const std::string number = attempt == 1 ? "" : fmt::format(".{}", attempt);
    // A leading dot hides a file and begins no extension; a very long "extension" is none either.
    constexpr size_t longestExtension = 32;
    const size_t dot = name.rfind('.');
    const bool extended = dot != std::string_view::npos && dot > 0 && name.size() - dot <= longestExtension;
    const std::string_view extension = extended ? name.substr(dot) : std::string_view();
    const std::string_view stem = name.substr(0, name.size() - extension.size());
    return fmt::format("{}{}{}", shortened(stem, most - number.size() - extension.size()), number, extension);
}

} // namespace vh
