#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vh::house {

struct SourceFile {
    std::string path; ///< relative to the folder that was read
    std::string text;
};

/// The files below `folder` of the source tree whose names end in one of `endings`, in a fixed order.
std::vector<SourceFile> filesUnder(std::string_view folder, const std::vector<std::string_view>& endings);

std::vector<std::string_view> linesOf(std::string_view text);

} // namespace vh::house
