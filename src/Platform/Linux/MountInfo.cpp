#include "Platform/FileIdentity.h"
#include "Platform/Files.h"
#include "Platform/PathParts.h"
#include "Platform/Volumes.h"

#include <charconv>
#include <fmt/format.h>
#include <optional>
#include <sys/sysmacros.h>

namespace vh {

namespace {

/// The table writes blanks, line ends and backslashes as three octal digits.
std::string unescaped(std::string_view field) {
    const auto octal = [](char c) {
        return c >= '0' && c <= '7';
    };
    std::string result;
    for (size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && octal(field[i + 1]) && octal(field[i + 2]) &&
            octal(field[i + 3])) {
            result += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                        (field[i + 3] - '0'));
            i += 3;
        } else {
            result += field[i];
        }
    }
    return result;
}

std::optional<unsigned> number(std::string_view text) {
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::string_view takeUntil(std::string_view& text, char separator) {
    const size_t at = text.find(separator);
    const std::string_view taken = text.substr(0, at);
    text.remove_prefix(at == std::string_view::npos ? text.size() : at + 1);
    return taken;
}

bool hasOption(std::string_view options, std::string_view wanted) {
    while (!options.empty())
        if (takeUntil(options, ',') == wanted)
            return true;
    return false;
}

/// "36 35 98:0 /root /point rw,noatime master:1 - ext4 /dev/root rw": any number of fields stands before the dash.
std::optional<MountEntry> parseLine(std::string_view line) {
    MountEntry entry;
    const auto id = number(takeUntil(line, ' '));
    takeUntil(line, ' ');
    std::string_view device = takeUntil(line, ' ');
    const auto major = number(takeUntil(device, ':'));
    const auto minor = number(device);
    entry.root = unescaped(takeUntil(line, ' '));
    entry.path = unescaped(takeUntil(line, ' '));
    const std::string_view mountOptions = takeUntil(line, ' ');
    while (!line.empty() && takeUntil(line, ' ') != "-")
        ;
    entry.fileSystem = unescaped(takeUntil(line, ' '));
    entry.source = unescaped(takeUntil(line, ' '));
    if (!id || !major || !minor || !entry.path.starts_with('/') || entry.fileSystem.empty())
        return std::nullopt;
    entry.id = *id;
    entry.device = makedev(*major, *minor);
    entry.readOnly = hasOption(mountOptions, "ro") || hasOption(line, "ro");
    return entry;
}

} // namespace

std::vector<MountEntry> parseMountInfo(std::string_view text) {
    std::vector<MountEntry> entries;
    while (!text.empty())
        if (std::optional<MountEntry> entry = parseLine(takeUntil(text, '\n')))
            entries.push_back(std::move(*entry));
    return entries;
}

std::vector<MountEntry> mountTable() {
    return parseMountInfo(readFile("/proc/self/mountinfo"));
}

std::string devicePathOf(const MountEntry& entry) {
    if (!entry.source.starts_with("/dev/"))
        return {};
    if (identityOf(entry.source))
        return entry.source;
    return fmt::format("/dev/block/{}:{}", major(entry.device), minor(entry.device));
}

std::string mountPointOf(const std::string& path) {
    const std::string real = realFolder(path);
    std::string longest = "/";
    for (const MountEntry& entry : mountTable()) {
        const bool holds = real == entry.path || real.starts_with(joinPath(entry.path, ""));
        if (holds && entry.path.size() > longest.size())
            longest = entry.path;
    }
    return longest;
}

} // namespace vh
