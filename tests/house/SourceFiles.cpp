#include "house/SourceFiles.h"

#include "Platform/Files.h"

#include <algorithm>
#include <filesystem>

namespace vh::house {

std::vector<SourceFile> filesUnder(std::string_view folder, const std::vector<std::string_view>& endings) {
    const auto root = std::filesystem::path(VH_SOURCE_DIR) / folder;
    std::vector<SourceFile> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        const std::string path = entry.path().string();
        const bool isWanted =
            std::ranges::any_of(endings, [&](std::string_view ending) { return path.ends_with(ending); });
        if (entry.is_regular_file() && isWanted)
            files.push_back({entry.path().lexically_relative(root).string(), readFile(path)});
    }
    std::ranges::sort(files, {}, &SourceFile::path);
    return files;
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

} // namespace vh::house
