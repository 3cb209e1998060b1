#include "Core/FileKind.h"

#include "Core/FileKindTable.h"
#include "Core/Fold.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace vh {

namespace {

std::string_view nameOf(std::string_view path) {
    while (path.ends_with('/'))
        path.remove_suffix(1);
    return path.substr(path.rfind('/') + 1);
}

/// In lower case. Empty for no extension; the point of a hidden name such as ".profile" begins none.
std::string extensionOf(std::string_view name) {
    const size_t point = name.rfind('.');
    return point == 0 || point == std::string_view::npos ? std::string() : foldCase(name.substr(point + 1));
}

using KindByExtension = std::unordered_map<std::string_view, FileKind>;

KindByExtension readLists() {
    KindByExtension kinds;
    for (auto [kind, words] : fileKindTable::lists)
        while (!words.empty()) {
            const size_t end = std::min(words.find(' '), words.size());
            kinds.emplace(words.substr(0, end), kind);
            words.remove_prefix(std::min(end + 1, words.size()));
        }
    return kinds;
}

FileKind kindOfExtension(std::string_view extension) {
    static const KindByExtension kinds = readLists();
    const auto found = kinds.find(extension);
    return found == kinds.end() ? FileKind::other : found->second;
}

/// "001" of "day.7z.001": a part of something cut into numbered pieces.
bool isPartNumber(std::string_view extension) {
    return extension.size() == 3 &&
           std::ranges::all_of(extension, [](char c) { return c >= '0' && c <= '9'; });
}

FileKind kindOfFolder(std::string_view extension) {
    for (const auto& [package, kind] : fileKindTable::packages)
        if (package == extension)
            return kind;
    return FileKind::folder;
}

} // namespace

FileKind fileKindOf(std::string_view path, FileType type) {
    std::string_view name = nameOf(path);
    const std::string extension = extensionOf(name);
    if (type == FileType::folder)
        return kindOfFolder(extension);
    if (const FileKind kind = kindOfExtension(extension); kind != FileKind::other || !isPartNumber(extension))
        return kind;
    name.remove_suffix(extension.size() + 1);
    return kindOfExtension(extensionOf(name));
}

} // namespace vh
