#include "Tools/SystemJunk/Places.h"

#include <filesystem>

namespace vh::junk {

std::string withoutLinks(const std::string& path) {
    std::error_code failed;
    const auto real = std::filesystem::weakly_canonical(path, failed);
    return failed ? path : real.string();
}

} // namespace vh::junk
