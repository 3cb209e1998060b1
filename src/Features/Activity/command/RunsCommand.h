#pragma once

#include "Core/RunRecord.h"

#include <optional>
#include <string>
#include <vector>

namespace vh::cli {

class CommandLine;
class Verb;
struct Context;

/// The run whose identifier begins so. Complains and gives nothing when there is none, or more than one.
std::optional<RunRecord> findRun(Context& context, const std::string& word);

/// The verb report.
void describeRunsReport(Verb& noun, CommandLine& line);

/// The verbs that change something: undo, export, prune, location and move.
void describeRunsUpkeep(Verb& noun, CommandLine& line);

} // namespace vh::cli
