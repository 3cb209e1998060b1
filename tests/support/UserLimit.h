#pragma once

#include <string>

namespace vh::test {

/// Sets a limit of the system's ("max_inotify_watches") for this process alone, in a user namespace of its own, whose
/// limits nobody else meets. For a child process. Throws when that is not permitted.
void setUserLimit(const std::string& name, int value);

} // namespace vh::test
