#pragma once

#include <array>
#include <string_view>

namespace vh {

/// The kernel's alias roots, below which every path of the system can be named a second time. Whoever inspects a path
/// before a privileged or destructive act passes it through real() first.
struct SystemPaths {
    static constexpr std::array<std::string_view, 3> virtualRoots{"/.nofollow", "/.resolve", "/.vol"};

    static bool isVirtual(std::string_view path);
    /// The path without its alias root, "/" when nothing is left. A view into `path` or of a constant.
    static std::string_view real(std::string_view path);
};

} // namespace vh
