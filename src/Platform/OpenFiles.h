#pragma once

#include <set>
#include <string>

namespace vh {

/// Names directly under `folder` that running processes hold open, run from, map, stand in, listen at, were given on
/// their command line, or have as their own temporary folder (not so this process). Of the processes of others that
/// this user may not look into, only sockets and command lines are known.
std::set<std::string> childrenInUse(const std::string& folder);

} // namespace vh
