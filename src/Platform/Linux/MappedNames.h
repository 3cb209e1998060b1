#pragma once

#include <set>
#include <string>
#include <string_view>

namespace vh {

/// Adds the first component below `prefix` (which ends in a slash) of every file that stands in the text of
/// /proc/<pid>/maps. Deleted files are left out.
void addMappedNames(std::string_view maps, const std::string& prefix, std::set<std::string>& names);

} // namespace vh
