#pragma once

#include <string>
#include <string_view>

namespace vh {

/// A path as the folder that holds the item and the item's name in it. Trailing slashes are dropped, so that a link
/// written with one is still the link. The name is empty for "/" and for nothing.
struct PathParts {
    std::string folder; ///< "." when the path is a bare name
    std::string name;
};
PathParts splitPath(std::string_view path);

/// `folder` and `name` with exactly one slash between them.
std::string joinPath(std::string_view folder, std::string_view name);

/// Whether `path` is something below `folder`, or at it; as text alone. Both may end in a slash.
bool isBelow(std::string_view path, std::string_view folder);
bool isAtOrBelow(std::string_view path, std::string_view folder);

/// Without empty, "." and ".." components and without a trailing slash, as text alone. Stays relative if it was.
std::string standardisedPath(std::string_view path);

/// The absolute path of a folder with all links resolved; what is missing of it stays as it is written. Throws
/// SystemError.
std::string realFolder(const std::string& folder);

/// The absolute path of `path` with the links among its folders resolved, but not the item itself. Throws
/// SystemError.
std::string withRealFolder(const std::string& path);

} // namespace vh
