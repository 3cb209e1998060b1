#pragma once

#include <set>
#include <string>

namespace vh {

/// Names directly under `folder` that running processes hold open, run from, map, stand in or listen at. Processes of
/// others that this user may not look into are left out, except for their sockets.
std::set<std::string> childrenInUse(const std::string& folder);

} // namespace vh
