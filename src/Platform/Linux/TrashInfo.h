#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// What a ".trashinfo" file says. Source: freedesktop.org Trash specification 1.0.
struct TrashInfo {
    std::string path;         ///< bytes; absolute, or relative to the folder that holds the volume's Trash
    std::string deletionDate; ///< local time, "2026-03-29T14:05:00"
};

std::string trashInfoText(const TrashInfo& info);
/// Nothing when there is no "[Trash Info]" group, no path, a broken escape, or a path that climbs with "..".
std::optional<TrashInfo> parseTrashInfo(std::string_view text);

constexpr std::string_view trashInfoSuffix = ".trashinfo";

/// The name an item called `name` gets in the Trash at the attempt 1, 2, …: itself, "stem.2.ext", and so on, shortened
/// at a character's start so that it fits `mostBytes` even with the suffix of its info file.
std::string trashName(std::string_view name, unsigned attempt, size_t mostBytes);

} // namespace vh
