#pragma once

#include "Platform/Files.h"

#include <string>
#include <string_view>

namespace vh::junk {

/// True when a name says that it holds logs: one of the words log, logs, journal, trace, crash, report between
/// characters that are no letters, or an ending such as .log, .out, .err, also rotated and compressed (.log.2.gz).
bool nameSaysLogs(std::string_view name);

/// True when an entry is made of logs and nothing else. The folder for logs also holds state that people want to keep
/// (an editor's undo, the shell's history, sound settings), and nothing but names tells them apart. So an entry counts
/// only when its own name says so, and a folder also when the names of all its files do, as far as they can be looked
/// at; what lies in a folder whose name says so counts whole.
bool consistsOfLogs(const std::string& path, FileType type);

} // namespace vh::junk
