#pragma once

#include "cli/CommandLine.h"

#include <optional>

namespace vh::cli {

/// Asks on a terminal before something is removed or replaced, unless --yes has answered (CommandLine::asks); `show` first prints what it
/// is about. Nothing means: go on. Without a terminal it refuses.
std::optional<Exit> unlessAgreed(Context& context, const std::string& question,
                                 const std::function<void()>& show = {});

/// The same before `file` is written over. What is not a plain file (a device, a pipe) holds nothing that could be lost.
std::optional<Exit> unlessReplaceable(Context& context, const std::string& file);

} // namespace vh::cli
