#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vh {

/// The extended attributes of an open file that may be read; none where the file system has none.
std::vector<std::pair<std::string, std::string>> attributesOf(int file);

/// Of an open file; none where the file system has none.
std::vector<std::string> attributeNamesOf(int file);
/// Whether an attribute is one in which access lists are kept.
bool isAccessList(const std::string& name);
/// Whether what is made in this open folder gets access lists of the folder's.
bool givesAccessLists(int folder);
/// Does nothing where it cannot.
void removeAttribute(int file, const std::string& name);

/// False and errno on failure.
bool setAttribute(int file, const std::string& name, const std::string& value);

} // namespace vh
