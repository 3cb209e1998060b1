#include "Tools/SystemJunk/Places.h"

#include <filesystem>

namespace vh::junk {

bool isOrHolds(std::string_view folder, std::string_view path) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::string withoutLinks(const std::string& path) {
    std::error_code failed;
    const auto real = std::filesystem::weakly_canonical(path, failed);
    return failed ? path : real.string();
}

} // namespace vh::junk
