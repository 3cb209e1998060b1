#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace vh::reports {

/// The lines that one page shows.
struct PageLines {
    size_t first = 0;
    size_t count = 0;
    bool operator==(const PageLines&) const = default;
};

/// A table that begins with fewer lines than these on the first page begins on the next one.
inline constexpr size_t fewestLinesUnderHead = 3;

/// Lines over pages: the first has room for `onFirst` of them, every other for `onOthers`, at least one. There is
/// always a first page.
inline std::vector<PageLines> paginate(size_t lines, size_t onFirst, size_t onOthers) {
    const size_t fit = std::max<size_t>(onOthers, 1);
    const bool startsLate = onFirst < std::min(fewestLinesUnderHead, lines);
    std::vector<PageLines> pages{{0, startsLate ? 0 : std::min(lines, onFirst)}};
    for (size_t next = pages.front().count; next < lines; next += pages.back().count)
        pages.push_back({next, std::min(fit, lines - next)});
    return pages;
}

} // namespace vh::reports
