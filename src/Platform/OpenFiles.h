#pragma once

#include <set>
#include <string>

namespace vh {

/// Names directly under `folder` that this user's running processes hold open, run from, map or stand in.
/// Processes that may not be looked into are left out.
std::set<std::string> childrenInUse(const std::string& folder);

} // namespace vh
