#pragma once

#include "Core/RunRecord.h"

#include <vector>

namespace vh {
class Texts;
}

namespace vh::cli {

/// A table of runs for people.
void printRuns(const std::vector<RunRecord>& runs, const Texts& texts);

} // namespace vh::cli
