#pragma once

#include "Core/RunRecord.h"
#include "Tools/FastCopy/CopyReport.h"

#include <string>
#include <vector>

namespace vh {
class RunHandle;
class Texts;
} // namespace vh

namespace vh::copy {

inline constexpr const char* toolID = "fast-copy";

/// What the record of a copy says before it ends.
RunDetails detailsOf(const std::vector<std::string>& sources, const std::vector<std::string>& destinations);

/// One sentence or two on what a copy did.
std::string summaryOf(const CopyReport& report, const Texts& texts);

/// Finishes the run with what the copy did.
RunRecord finishRun(RunHandle& run, const CopyReport& report, const Texts& texts);

} // namespace vh::copy
